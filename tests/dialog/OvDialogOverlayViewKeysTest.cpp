#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "dialog/DialogFixture.h"
#include "dialog/OvDialogOverlayView.h"

namespace vantrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Confirmed = std::pair<DialogType, std::optional<std::string>>;

class DialogKeys : public test::DialogFixture {};

TEST_F(DialogKeys, escapeCancels) {
    open(copy);
    EXPECT_EQ(press(Key::escape), EventResult::handled);
    EXPECT_EQ(delegate->cancellations, 1);
    EXPECT_THAT(delegate->confirmed, IsEmpty());
}

TEST_F(DialogKeys, returnAndKeypadEnterConfirm) {
    open(copy);
    EXPECT_EQ(press(Key::returnKey), EventResult::handled);
    EXPECT_EQ(press(Key::keypadEnter), EventResult::handled);
    EXPECT_THAT(delegate->confirmed,
                ElementsAre(Confirmed{copy, "/right/a.txt"}, Confirmed{copy, "/right/a.txt"}));
    EXPECT_EQ(delegate->cancellations, 0);
}

TEST_F(DialogKeys, theFirstButtonReportsTheFieldsTextWhereThereIsOne) {
    for (const DialogType& type : {copy, move, mkdir}) {
        open(type);
        field().words = "";
        press(Key::returnKey);
        EXPECT_EQ(delegate->confirmed.back(), (Confirmed{type, ""})) << "an empty text is a text";
        field().words = "caf\xE9";
        press(Key::returnKey);
        EXPECT_EQ(delegate->confirmed.back(), (Confirmed{type, "caf\xE9"}));
    }
    for (const DialogType& type : {deletion, viewer, help, sort}) {
        open(type);
        press(Key::returnKey);
        EXPECT_EQ(delegate->confirmed.back(), (Confirmed{type, std::nullopt}));
    }
}

TEST_F(DialogKeys, tabGoesRoundTheButtons) {
    open(copy);
    const int redraws = host.redraws;
    EXPECT_EQ(press(Key::tab), EventResult::handled);
    EXPECT_EQ(overlay->selectedButtonIndex(), 1);
    EXPECT_GT(host.redraws, redraws);
    press(Key::tab);
    EXPECT_EQ(overlay->selectedButtonIndex(), 0);
    press(Key::tab);
    EXPECT_EQ(overlay->selectedButtonIndex(), 1);
    open(help);
    press(Key::tab);
    EXPECT_EQ(overlay->selectedButtonIndex(), 0);
}

TEST_F(DialogKeys, tabDoesNothingWhereThereAreNoButtons) {
    overlay = OvDialogOverlayView::make({0, 0, 1100, 720}, ports);
    EXPECT_EQ(press(Key::tab), EventResult::handled);
    EXPECT_EQ(overlay->selectedButtonIndex(), 0);
}

TEST_F(DialogKeys, returnOnCancelCancelsEvenWithTextInTheField) {
    for (const DialogType& type : {copy, move, mkdir, deletion, sort}) {
        open(type);
        press(Key::tab);
        delegate->cancellations = 0;
        press(Key::returnKey);
        EXPECT_EQ(delegate->cancellations, 1);
    }
    EXPECT_THAT(delegate->confirmed, IsEmpty());
}

TEST_F(DialogKeys, digitsAnswerTheSortDialogWhateverButtonIsHighlighted) {
    open(sort);
    EXPECT_EQ(type("1"), EventResult::handled);
    EXPECT_EQ(type("2"), EventResult::handled);
    press(Key::tab);
    EXPECT_EQ(type("3"), EventResult::handled);
    EXPECT_EQ(type("4"), EventResult::handled);
    EXPECT_THAT(delegate->confirmed, ElementsAre(Confirmed{sort, "name"}, Confirmed{sort, "size"},
                                                 Confirmed{sort, "date"}, Confirmed{sort, "ext"}));
    EXPECT_EQ(delegate->cancellations, 0);
}

TEST_F(DialogKeys, digitsCountAsTypedWithTheModifiers) {
    open(sort);
    EXPECT_EQ(
        overlay->keyDown({.key = Key::character, .characters = "!", .charactersIgnoringModifiers = "1"}),
        EventResult::ignored);
    EXPECT_EQ(
        overlay->keyDown({.key = Key::character, .characters = "1", .charactersIgnoringModifiers = "&"}),
        EventResult::handled);
    EXPECT_THAT(delegate->confirmed, ElementsAre(Confirmed{sort, "name"}));
}

TEST_F(DialogKeys, everythingElseIsPassedOn) {
    open(sort);
    for (const char* const characters : {"5", "0", "a", "11", ""})
        EXPECT_EQ(type(characters), EventResult::ignored);
    for (const DialogType& kind : {copy, move, mkdir, deletion, viewer, help}) {
        open(kind);
        EXPECT_EQ(type("1"), EventResult::ignored);
        EXPECT_EQ(type("x"), EventResult::ignored);
    }
    for (const Key key :
         {Key::left, Key::right, Key::up, Key::down, Key::space, Key::f1, Key::f10, Key::backspace}) {
        EXPECT_EQ(press(key), EventResult::ignored);
    }
    EXPECT_THAT(delegate->confirmed, IsEmpty());
    EXPECT_EQ(delegate->cancellations, 0);
    EXPECT_EQ(overlay->selectedButtonIndex(), 0);
}

TEST_F(DialogKeys, theFieldsKeysAreTheDialogs) {
    open(copy);
    const TextField::KeyHandler fieldHandler = field().handler;
    const auto pressInField = [&](Key key) {
        return fieldHandler({.key = key, .characters = {}, .charactersIgnoringModifiers = {}});
    };
    EXPECT_EQ(pressInField(Key::returnKey), EventResult::handled);
    EXPECT_EQ(pressInField(Key::keypadEnter), EventResult::handled);
    EXPECT_EQ(delegate->confirmed.size(), 2U);
    EXPECT_EQ(pressInField(Key::tab), EventResult::handled);
    EXPECT_EQ(overlay->selectedButtonIndex(), 1);
    EXPECT_EQ(pressInField(Key::escape), EventResult::handled);
    EXPECT_EQ(delegate->cancellations, 1);
    EXPECT_EQ(pressInField(Key::f10), EventResult::ignored);
}

TEST_F(DialogKeys, answersAreDroppedWithoutADelegate) {
    open(sort);
    delegate.reset();
    EXPECT_EQ(press(Key::returnKey), EventResult::handled);
    EXPECT_EQ(press(Key::escape), EventResult::handled);
    EXPECT_EQ(type("1"), EventResult::handled);
    EXPECT_EQ(click({1, 1}), EventResult::handled);
    EXPECT_EQ(overlay->superview(), root.get()) << "the dialog stays";
}

TEST_F(DialogKeys, theDialogMayBeTakenAwayInsideItsOwnCallback) {
    delegate->onAnswer = [&] {
        overlay->removeFromSuperview();
        overlay.reset();
    };
    // Keys reach a dialog through a plain pointer here, so that nobody but the dialog keeps it alive.
    const auto keyDown = [](OvDialogOverlayView* dialog, Key key) {
        return dialog->keyDown({.key = key, .characters = {}, .charactersIgnoringModifiers = {}});
    };
    for (const Key key : {Key::returnKey, Key::escape}) {
        open(copy);
        EXPECT_EQ(keyDown(overlay.get(), key), EventResult::handled);
        EXPECT_EQ(overlay, nullptr);
        open(copy);
        const TextField::KeyHandler handler = field().handler;
        EXPECT_EQ(handler({.key = key, .characters = {}, .charactersIgnoringModifiers = {}}),
                  EventResult::handled);
        EXPECT_EQ(overlay, nullptr);
    }
    open(copy);
    EXPECT_EQ(click({10, 10}), EventResult::handled);
    EXPECT_EQ(overlay, nullptr);
    EXPECT_THAT(root->subviews(), IsEmpty());
    EXPECT_THAT(desktop.textFields.alive, IsEmpty());
    EXPECT_EQ(delegate->confirmed.size(), 2U);
    EXPECT_EQ(delegate->cancellations, 3);
}

TEST_F(DialogKeys, theCallbackMayShowAnotherDialogInTheSameOverlay) {
    delegate->onAnswer = [&] { overlay->setDialogType(help); };
    open(copy);
    press(Key::returnKey);
    EXPECT_THAT(delegate->confirmed, ElementsAre(Confirmed{copy, "/right/a.txt"}));
    EXPECT_EQ(overlay->dialogType(), help);
}

}  // namespace
}  // namespace vantrel
