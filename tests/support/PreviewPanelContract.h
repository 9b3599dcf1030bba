#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <vector>

#include "platform/PreviewPanel.h"

namespace vantrel::test {

/// Shows one item that does not exist, and keeps the keys that it gets.
class RecordingPreviewOwner final : public PreviewPanelDataSource, public PreviewPanelDelegate {
public:
    int numberOfPreviewItems() const override { return 1; }
    std::optional<PreviewItem> previewItemAt(int) const override {
        return PreviewItem{"/missing", "missing", ""};
    }
    EventResult previewPanelHandleKey(const KeyEvent& event) override {
        keys.push_back(event.key);
        return EventResult::handled;
    }

    std::vector<Key> keys;
};

/// What every preview panel keeps. `Subject` offers `PreviewPanel& panel()` and `void press(key)` into the
/// open panel.
template <class Subject>
class PreviewPanelContract : public testing::Test {
protected:
    PreviewPanel& panel() { return subject_.panel(); }
    void press(Key key) { subject_.press(key); }

    void open() {
        panel().setDataSource(owner);
        panel().setDelegate(owner);
        panel().makeKeyAndOrderFront();
    }

    std::shared_ptr<RecordingPreviewOwner> owner = std::make_shared<RecordingPreviewOwner>();

private:
    Subject subject_;
};

TYPED_TEST_SUITE_P(PreviewPanelContract);

TYPED_TEST_P(PreviewPanelContract, isHiddenUntilItIsAskedForAndAfterwards) {
    EXPECT_FALSE(this->panel().isVisible());
    this->panel().orderOut();
    EXPECT_FALSE(this->panel().isVisible());
    for (int time = 0; time < 2; ++time) {
        this->open();
        EXPECT_TRUE(this->panel().isVisible());
        this->panel().makeKeyAndOrderFront();
        EXPECT_TRUE(this->panel().isVisible()) << "as it was";
        this->panel().orderOut();
        EXPECT_FALSE(this->panel().isVisible());
    }
}

TYPED_TEST_P(PreviewPanelContract, spaceAndEscapeCloseItAndNobodyElseGetsThem) {
    for (const Key key : {Key::space, Key::escape}) {
        this->open();
        this->press(key);
        EXPECT_FALSE(this->panel().isVisible());
    }
    EXPECT_THAT(this->owner->keys, testing::IsEmpty());
}

TYPED_TEST_P(PreviewPanelContract, otherKeysGoToItsDelegateAndItStaysOpen) {
    this->open();
    for (const Key key : {Key::down, Key::pageUp, Key::returnKey, Key::f10}) this->press(key);
    EXPECT_THAT(this->owner->keys, testing::ElementsAre(Key::down, Key::pageUp, Key::returnKey, Key::f10));
    EXPECT_TRUE(this->panel().isVisible());
}

TYPED_TEST_P(PreviewPanelContract, sourceAndDelegateMayBeGone) {
    this->open();
    this->owner.reset();
    this->press(Key::down);
    EXPECT_TRUE(this->panel().isVisible());
    this->press(Key::escape);
    EXPECT_FALSE(this->panel().isVisible());
    this->panel().makeKeyAndOrderFront();
    EXPECT_TRUE(this->panel().isVisible());
}

REGISTER_TYPED_TEST_SUITE_P(PreviewPanelContract, isHiddenUntilItIsAskedForAndAfterwards,
                            spaceAndEscapeCloseItAndNobodyElseGetsThem,
                            otherKeysGoToItsDelegateAndItStaysOpen, sourceAndDelegateMayBeGone);

}  // namespace vantrel::test
