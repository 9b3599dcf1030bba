#include "qt/QtTextField.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QTest>

#include "qt/QtTestSupport.h"

namespace vantrel::test {

namespace {

const TextFieldStyle style{mono, {1, 1, 1}, {0, 0, 0.4}};

class QtTextFieldTest : public testing::Test {
protected:
    QtTextFieldTest() {
        window.setContentView(root);
        window.centerAndShow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        field = makeQtTextField(window.content(), style);
        field->setFrame({50, 60, 200, 26});
        edit = window.content().findChild<QLineEdit*>();
    }

    void openWith(const std::string& text) {
        field->setText(text);
        field->focusAndSelectAll();
    }

    void recordKeys() {
        field->setKeyHandler([this](const KeyEvent& event) {
            keys.push_back(event.key);
            return EventResult::handled;
        });
    }

    QRect placeOfEdit() const { return {edit->mapTo(&window.content(), QPoint(0, 0)), edit->size()}; }

    std::shared_ptr<RecordingView> root = std::make_shared<RecordingView>();
    QtWindow window{{"Field", {400, 300}, {100, 100}, {}}};
    std::unique_ptr<TextField> field;
    QLineEdit* edit = nullptr;
    std::vector<Key> keys;
};

}  // namespace

TEST_F(QtTextFieldTest, standsAtItsFrameOnTopOfTheContent) {
    ASSERT_NE(edit, nullptr);
    EXPECT_EQ(placeOfEdit(), QRect(50, 60, 200, 26));
    EXPECT_TRUE(edit->isVisible());
    field->setFrame({70, 80, 120, 26});
    EXPECT_EQ(placeOfEdit(), QRect(70, 80, 120, 26));
}

TEST_F(QtTextFieldTest, isPaintedInItsColoursWithASquareFrame) {
    openWith("");
    edit->deselect();
    const QImage image = window.content().grab().toImage();
    EXPECT_EQ(image.pixel(50, 60), qRgb(255, 255, 255)) << "a corner of the frame";
    EXPECT_EQ(image.pixel(249, 85), qRgb(255, 255, 255)) << "the opposite corner";
    EXPECT_EQ(image.pixel(150, 72), qRgb(0, 0, 102)) << "inside";
}

TEST_F(QtTextFieldTest, opensWithAllOfItsTextSelectedSoThatTypingReplacesIt) {
    openWith("New_Folder");
    EXPECT_TRUE(edit->hasFocus());
    EXPECT_EQ(edit->selectedText(), "New_Folder");
    QTest::keyClicks(edit, "x");
    EXPECT_EQ(field->text(), "x");
}

TEST_F(QtTextFieldTest, untouchedTextComesBackByteForByte) {
    for (const std::string text : {"caf\xE9.txt", "two\nlines", "e\xCC\x81", ""}) {
        field->setText(text);
        EXPECT_EQ(field->text(), text);
    }
}

TEST_F(QtTextFieldTest, editedTextKeepsTheBytesThatWereNotEdited) {
    openWith("caf\xE9");
    QTest::keyClick(edit, Qt::Key_End);
    QTest::keyClicks(edit, "s");
    EXPECT_EQ(field->text(), "caf\xE9s");
    QTest::keyClick(edit, Qt::Key_Backspace);
    EXPECT_EQ(field->text(), "caf\xE9") << "as it was again";
}

TEST_F(QtTextFieldTest, theOwnersKeysGoToTheHandlerOnceAndToNobodyElse) {
    recordKeys();
    openWith("text");
    QTest::keyClick(edit, Qt::Key_Return);
    QTest::keyClick(edit, Qt::Key_Enter, Qt::KeypadModifier);
    QTest::keyClick(edit, Qt::Key_Escape);
    QTest::keyClick(edit, Qt::Key_Tab);
    QTest::keyClick(edit, Qt::Key_Backtab, Qt::ShiftModifier);
    QTest::keyClick(edit, Qt::Key_F1);
    QTest::keyClick(edit, Qt::Key_F10);
    EXPECT_EQ(keys, (std::vector{Key::returnKey, Key::keypadEnter, Key::escape, Key::tab, Key::tab, Key::f1,
                                 Key::f10}));
    EXPECT_TRUE(root->keys.empty());
    EXPECT_TRUE(edit->hasFocus());
    EXPECT_EQ(field->text(), "text");
}

TEST_F(QtTextFieldTest, aKeyOfTheOwnersThatNobodyHandlesIsDropped) {
    field->setKeyHandler([](const KeyEvent&) { return EventResult::ignored; });
    openWith("text");
    QTest::keyClick(edit, Qt::Key_F7);
    EXPECT_TRUE(root->keys.empty());
}

TEST_F(QtTextFieldTest, editingKeysStayInTheField) {
    recordKeys();
    openWith("text");
    QTest::keyClick(edit, Qt::Key_Home);
    QTest::keyClick(edit, Qt::Key_Delete);
    QTest::keyClick(edit, Qt::Key_Up);
    QTest::keyClick(edit, Qt::Key_PageDown);
    QTest::keyClick(edit, Qt::Key_Space);
    EXPECT_EQ(field->text(), " ext");
    EXPECT_TRUE(keys.empty());
    EXPECT_TRUE(root->keys.empty());
}

TEST_F(QtTextFieldTest, theClipboardAndUndoWorkByTheUsualShortcuts) {
    openWith("text");
    QTest::keyClick(edit, Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(field->text(), "");
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "text");
    QTest::keyClick(edit, Qt::Key_V, Qt::ControlModifier);
    QTest::keyClick(edit, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(field->text(), "texttext");
    QTest::keyClick(edit, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_NE(field->text(), "texttext");
    EXPECT_TRUE(root->keys.empty());
}

TEST_F(QtTextFieldTest, theHandlerMayDestroyTheField) {
    openWith("text");
    const auto token = std::make_shared<int>(0);
    field->setKeyHandler([this, token](const KeyEvent&) {
        field.reset();
        keys.push_back(Key::returnKey);
        return EventResult::handled;
    });
    QTest::keyClick(edit, Qt::Key_Return);
    EXPECT_EQ(keys.size(), 1U);
    EXPECT_TRUE(window.content().hasFocus());
    serveEvents();
    EXPECT_EQ(window.content().findChild<QLineEdit*>(), nullptr);
    EXPECT_EQ(token.use_count(), 1) << "the handler is gone with the field";
}

TEST_F(QtTextFieldTest, aDestroyedFieldGivesTheKeyboardBack) {
    openWith("text");
    field.reset();
    EXPECT_TRUE(window.content().hasFocus());
    QTest::keyClick(&window.content(), Qt::Key_Down);
    EXPECT_EQ(root->keys.size(), 1U);
}

TEST_F(QtTextFieldTest, mayOutliveItsWindow) {
    auto other = std::make_unique<QtWindow>(WindowOptions{"Other", {300, 200}, {100, 100}, {}});
    const auto orphan = makeQtTextField(other->content(), style);
    orphan->setText("caf\xE9");
    other.reset();
    EXPECT_EQ(orphan->text(), "caf\xE9");
    orphan->setFrame({0, 0, 10, 10});
    orphan->focusAndSelectAll();
}

TEST_F(QtTextFieldTest, theFactoryPutsFieldsIntoTheWindowMadeLast) {
    const auto made = application().makeWindow({"Made", {300, 200}, {100, 100}, {}});
    const auto inMade = QtTextFieldFactory(application()).makeTextField(style);
    EXPECT_NE(application().content()->findChild<QLineEdit*>(), nullptr);
}

TEST_F(QtTextFieldTest, bytesThatAreNoTextSurviveEditingCuttingAndUndoing) {
    openWith("caf\xE9.txt");
    QTest::keyClick(edit, Qt::Key_End);
    QTest::keyClicks(edit, "Z");
    EXPECT_EQ(field->text(), "caf\xE9.txtZ");
    for (int i = 0; i < 5; ++i) QTest::keyClick(edit, Qt::Key_Backspace);
    EXPECT_EQ(field->text(), "caf\xE9");
    QTest::keyClick(edit, Qt::Key_Backspace);
    EXPECT_EQ(field->text(), "caf") << "one step for one byte";
    QTest::keyClick(edit, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(field->text(), "caf\xE9.txtZ");
    QTest::keyClick(edit, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(edit, Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(field->text(), "");
    QTest::keyClick(edit, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(field->text(), "caf\xE9.txtZ");
}

}  // namespace vantrel::test
