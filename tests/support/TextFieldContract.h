#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/TextField.h"

namespace vantrel::test {

/// What every text field keeps. `Subject` offers `std::unique_ptr<TextField> makeField()`, one at a time, and
/// `type(text)` (plain letters) and `press(key)` into the field that was made last.
template <class Subject>
class TextFieldContract : public testing::Test {
protected:
    TextField& field() { return *field_; }
    Subject& subject() { return subject_; }

    void open(const std::string& text) {
        field_->setText(text);
        field_->focusAndSelectAll();
    }

    void recordKeys() {
        field_->setKeyHandler([this](const KeyEvent& event) {
            keys.push_back(event.key);
            return EventResult::handled;
        });
    }

    std::vector<Key> keys;

private:
    Subject subject_;

protected:
    std::unique_ptr<TextField> field_ = subject_.makeField();
};

TYPED_TEST_SUITE_P(TextFieldContract);

TYPED_TEST_P(TextFieldContract, untouchedTextComesBackByteForByte) {
    EXPECT_EQ(this->field().text(), "");
    for (const std::string text : {"name", "caf\xE9.txt", "two\nlines", "e\xCC\x81", ""}) {
        this->field().setText(text);
        EXPECT_EQ(this->field().text(), text);
    }
}

TYPED_TEST_P(TextFieldContract, whatIsTypedFirstReplacesTheTextThatItOpensWith) {
    this->open("New_Folder");
    EXPECT_EQ(this->field().text(), "New_Folder");
    this->subject().type("ab");
    EXPECT_EQ(this->field().text(), "ab");
    this->subject().type("c");
    EXPECT_EQ(this->field().text(), "abc");
}

TYPED_TEST_P(TextFieldContract, whatIsTypedAfterATextWasSetIsAppended) {
    this->open("old");
    this->field().setText("new");
    this->subject().type("er");
    EXPECT_EQ(this->field().text(), "newer");
}

TYPED_TEST_P(TextFieldContract, theOwnersKeysGoToTheHandlerAndChangeNothing) {
    this->recordKeys();
    this->open("text");
    for (const Key key : {Key::returnKey, Key::escape, Key::tab, Key::f1, Key::f10})
        this->subject().press(key);
    EXPECT_THAT(this->keys, testing::ElementsAre(Key::returnKey, Key::escape, Key::tab, Key::f1, Key::f10));
    EXPECT_EQ(this->field().text(), "text");
}

TYPED_TEST_P(TextFieldContract, theOwnersKeysAreDroppedWhereNobodyWantsThem) {
    this->open("text");
    this->subject().press(Key::returnKey);
    this->subject().press(Key::f7);
    EXPECT_EQ(this->field().text(), "text");
}

TYPED_TEST_P(TextFieldContract, theHandlerMayDestroyTheField) {
    int calls = 0;
    this->field().setKeyHandler([this, &calls](const KeyEvent&) {
        this->field_.reset();
        ++calls;
        return EventResult::handled;
    });
    this->open("text");
    this->subject().press(Key::returnKey);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(this->field_, nullptr);
}

REGISTER_TYPED_TEST_SUITE_P(TextFieldContract, untouchedTextComesBackByteForByte,
                            whatIsTypedFirstReplacesTheTextThatItOpensWith,
                            whatIsTypedAfterATextWasSetIsAppended,
                            theOwnersKeysGoToTheHandlerAndChangeNothing,
                            theOwnersKeysAreDroppedWhereNobodyWantsThem, theHandlerMayDestroyTheField);

}  // namespace vantrel::test
