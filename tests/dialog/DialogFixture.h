#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "dialog/OvDialogOverlayView.h"
#include "support/FakeDesktop.h"
#include "support/RecordingCanvas.h"

namespace vantrel::test {

/// Keeps what the dialogs report; "cancelled" stands where one was cancelled.
class RecordingDialogDelegate final : public OvDialogDelegate {
public:
    using Input = std::optional<std::string>;

    void dialogDidConfirm(const DialogType& type, Input inputValue) override {
        confirmed.emplace_back(type, std::move(inputValue));
        if (onAnswer) onAnswer();
    }
    void dialogDidCancel() override {
        ++cancellations;
        if (onAnswer) onAnswer();
    }

    std::vector<std::pair<DialogType, Input>> confirmed;
    int cancellations = 0;
    std::function<void()> onAnswer;
};

/// A window's content with one dialog over it.
class DialogFixture : public testing::Test {
protected:
    void open(DialogType type, Size window = {1100, 720}) {
        root = std::make_shared<View>(Rect{0, 0, window.width, window.height});
        root->setHost(&host);
        overlay = OvDialogOverlayView::make(root->bounds(), ports);
        overlay->setDialogType(std::move(type));
        overlay->delegate = delegate;
        root->addSubview(overlay);
    }

    FakeTextField& field() {
        EXPECT_EQ(desktop.textFields.alive.size(), 1U);
        return *desktop.textFields.alive.at(0);
    }

    EventResult press(Key key) {
        return overlay->keyDown({.key = key, .characters = {}, .charactersIgnoringModifiers = {}});
    }
    EventResult type(const std::string& characters) {
        return overlay->keyDown(
            {.key = Key::character, .characters = characters, .charactersIgnoringModifiers = characters});
    }
    EventResult click(Point point) { return dispatchMouseDown(*root, {.locationInWindow = point}); }

    RecordingCanvas drawn() {
        RecordingCanvas canvas;
        root->drawTree(canvas);
        return canvas;
    }

    FakeDesktop desktop;
    Desktop ports = desktop.ports();
    CountingHost host;
    std::shared_ptr<View> root;
    std::shared_ptr<OvDialogOverlayView> overlay;
    std::shared_ptr<RecordingDialogDelegate> delegate = std::make_shared<RecordingDialogDelegate>();

    const DialogType copy = dialog::Copy{"a.txt", "/left/a.txt", "/right/a.txt"};
    const DialogType move = dialog::Move{"a.txt", "/left/a.txt", "a.txt"};
    const DialogType mkdir = dialog::Mkdir{"/left"};
    const DialogType deletion = dialog::Delete{"a.txt", "/left/a.txt"};
    const DialogType viewer = dialog::Viewer{"a.txt", "first\nsecond"};
    const DialogType help = dialog::Help{};
    const DialogType sort = dialog::Sort{};
};

}  // namespace vantrel::test
