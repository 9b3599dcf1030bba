#include "qt/QtMenuBar.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include "qt/QtTestSupport.h"
#include "qt/QtTextField.h"

namespace vantrel::test {

namespace {

using testing::ElementsAre;

class QtMenuBarTest : public testing::Test {
protected:
    QtMenuBarTest() {
        window.setContentView(root);
        window.showMenus(
            {{"File", {item("Open", "o"), MenuItem::separator(), item("Look", " ")}},
             {"View & more",
              {item("Hidden", "."), item("Next", "\t"), item("First", "1"), item("Search & find", "")}}});
        window.centerAndShow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    MenuItem item(const std::string& title, const std::string& keyEquivalent) {
        return {title, [this, title] { calls.push_back(title); }, keyEquivalent};
    }

    QMenu& menu(int index) { return *window.menuBar()->actions().at(index)->menu(); }

    // As the desktop delivers keys: to the window, which looks for the widget.
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
        QTest::keyClick(window.windowHandle(), key, modifiers);
    }

    std::vector<std::string> typedKeys() const {
        std::vector<std::string> typed;
        for (const KeyEvent& key : root->keys) typed.push_back(key.charactersIgnoringModifiers);
        return typed;
    }

    std::vector<std::string> calls;
    std::shared_ptr<RecordingView> root = std::make_shared<RecordingView>();
    QtWindow window{{"Menus", {1100, 720}, {800, 500}, {0, 0, 0.67}}};
};

}  // namespace

TEST_F(QtMenuBarTest, showsTheTitlesWithoutMnemonics) {
    ASSERT_EQ(window.menuBar()->actions().size(), 2);
    EXPECT_EQ(window.menuBar()->actions()[0]->text(), "File");
    EXPECT_EQ(window.menuBar()->actions()[1]->text(), "View && more");
    ASSERT_EQ(menu(1).actions().size(), 4);
    EXPECT_EQ(menu(1).actions()[0]->text(), "Hidden");
    EXPECT_EQ(menu(1).actions()[3]->text(), "Search && find");
}

TEST_F(QtMenuBarTest, showsSeparatorsWhereTheyAre) {
    ASSERT_EQ(menu(0).actions().size(), 3);
    EXPECT_FALSE(menu(0).actions()[0]->isSeparator());
    EXPECT_TRUE(menu(0).actions()[1]->isSeparator());
    EXPECT_FALSE(menu(0).actions()[2]->isSeparator());
}

TEST_F(QtMenuBarTest, showsKeyEquivalentsWithControl) {
    EXPECT_EQ(menu(0).actions()[0]->shortcut().toString(), "Ctrl+O");
    EXPECT_EQ(menu(0).actions()[2]->shortcut().toString(), "Ctrl+Space");
    EXPECT_EQ(menu(1).actions()[0]->shortcut().toString(), "Ctrl+.");
    EXPECT_EQ(menu(1).actions()[1]->shortcut().toString(), "Ctrl+Tab");
    EXPECT_EQ(menu(1).actions()[2]->shortcut().toString(), "Ctrl+1");
    EXPECT_TRUE(menu(1).actions()[3]->shortcut().isEmpty());
}

TEST_F(QtMenuBarTest, standsInTheWindow) {
    EXPECT_FALSE(window.menuBar()->isNativeMenuBar());
    EXPECT_EQ(window.menuBar()->geometry().topLeft(), QPoint(0, 0));
    EXPECT_EQ(window.menuBar()->width(), window.width());
}

TEST_F(QtMenuBarTest, aChosenItemRunsItsActionOnce) {
    menu(0).actions()[2]->trigger();
    EXPECT_THAT(calls, ElementsAre("Look"));
}

TEST_F(QtMenuBarTest, aKeyEquivalentRunsItsActionOnceAndReachesNoView) {
    press(Qt::Key_O, Qt::ControlModifier);
    EXPECT_THAT(calls, ElementsAre("Open"));
    press(Qt::Key_Space, Qt::ControlModifier);
    press(Qt::Key_Period, Qt::ControlModifier);
    press(Qt::Key_Tab, Qt::ControlModifier);
    press(Qt::Key_1, Qt::ControlModifier);
    EXPECT_THAT(calls, ElementsAre("Open", "Look", "Hidden", "Next", "First"));
    EXPECT_TRUE(root->keys.empty());
    EXPECT_TRUE(window.content().hasFocus());
}

TEST_F(QtMenuBarTest, everyOtherKeyWithControlReachesTheViewOnce) {
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_O, Qt::ControlModifier | Qt::ShiftModifier);
    press(Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
    press(Qt::Key_O, Qt::ControlModifier | Qt::AltModifier);
    press(Qt::Key_O, Qt::NoModifier);
    press(Qt::Key_Tab, Qt::NoModifier);
    press(Qt::Key_Space, Qt::NoModifier);
    EXPECT_THAT(typedKeys(), ElementsAre("a", "O", "", "o", "o", "", " "));
    EXPECT_TRUE(calls.empty());
}

TEST_F(QtMenuBarTest, aKeyEquivalentIsFoundOnAKeyboardWithoutLatinLetters) {
    constexpr quint32 scanCodeOfO = 32;
    constexpr int cyrillicShcha = 0x0429;
    QKeyEvent event(QEvent::KeyPress, cyrillicShcha, Qt::ControlModifier, scanCodeOfO, 0, 0);
    QCoreApplication::sendEvent(&window.content(), &event);
    EXPECT_THAT(calls, ElementsAre("Open"));
    EXPECT_TRUE(root->keys.empty());
}

TEST_F(QtMenuBarTest, aKeyEquivalentWorksWhileAFieldHasTheKeyboard) {
    const auto field = makeQtTextField(window.content(), {mono, white, black});
    std::vector<Key> ownersKeys;
    field->setKeyHandler([&](const KeyEvent& key) {
        ownersKeys.push_back(key.key);
        return EventResult::handled;
    });
    field->setFrame({10, 10, 200, 26});
    field->setText("text");
    field->focusAndSelectAll();
    press(Qt::Key_O, Qt::ControlModifier);
    press(Qt::Key_Tab, Qt::ControlModifier);
    press(Qt::Key_Space, Qt::ControlModifier);
    EXPECT_THAT(calls, ElementsAre("Open", "Next", "Look"));
    EXPECT_TRUE(ownersKeys.empty());
    EXPECT_EQ(field->text(), "text");
    press(Qt::Key_Tab, Qt::NoModifier);
    press(Qt::Key_F10, Qt::NoModifier);
    EXPECT_THAT(ownersKeys, ElementsAre(Key::tab, Key::f10));
    EXPECT_TRUE(root->keys.empty());
}

TEST_F(QtMenuBarTest, aFieldKeepsTheKeysThatEditItsText) {
    const auto field = makeQtTextField(window.content(), {mono, white, black});
    field->setFrame({10, 10, 200, 26});
    field->setText("text");
    field->focusAndSelectAll();
    auto* const edit = window.content().findChild<QLineEdit*>();
    press(Qt::Key_End, Qt::NoModifier);
    press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(edit->selectedText(), "text");
    press(Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(field->text(), "");
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(field->text(), "text");
    EXPECT_TRUE(calls.empty());
}

TEST_F(QtMenuBarTest, aKeyEquivalentWorksInTheProgramsOtherWindows) {
    QLineEdit other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    QTest::keyClick(other.windowHandle(), Qt::Key_O, Qt::ControlModifier);
    EXPECT_THAT(calls, ElementsAre("Open"));
}

TEST_F(QtMenuBarTest, f10ReachesTheContentAndOpensNoMenu) {
    press(Qt::Key_F10, Qt::NoModifier);
    ASSERT_EQ(root->keys.size(), 1U);
    EXPECT_EQ(root->keys[0].key, Key::f10);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(QtMenuBarTest, aTapOnAltLeavesTheKeyboardWhereItIs) {
    QTest::keyPress(window.windowHandle(), Qt::Key_Alt, Qt::AltModifier);
    QTest::keyRelease(window.windowHandle(), Qt::Key_Alt, Qt::NoModifier);
    EXPECT_TRUE(window.content().hasFocus());
    press(Qt::Key_Down, Qt::NoModifier);
    ASSERT_EQ(root->keys.size(), 1U);
    EXPECT_EQ(root->keys[0].key, Key::down);
}

TEST_F(QtMenuBarTest, altWithALetterOpensTheMenuWhoseTitleBeginsWithIt) {
    press(Qt::Key_F, Qt::AltModifier);
    EXPECT_EQ(QApplication::activePopupWidget(), &menu(0));
    QTest::keyClick(&menu(0), Qt::Key_Escape);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    press(Qt::Key_V, Qt::AltModifier);
    EXPECT_EQ(QApplication::activePopupWidget(), &menu(1));
    QTest::keyClick(&menu(1), Qt::Key_Down);
    QTest::keyClick(&menu(1), Qt::Key_Return);
    EXPECT_THAT(calls, ElementsAre("Hidden"));
    EXPECT_TRUE(root->keys.empty());
    press(Qt::Key_Down, Qt::NoModifier);
    EXPECT_EQ(root->keys.size(), 1U);
}

TEST_F(QtMenuBarTest, altWithALetterOfSeveralTitlesGoesThroughThem) {
    window.showMenus(
        {{"Vantrel", {item("About", "")}}, {"File", {item("Open", "")}}, {"View", {item("Hidden", "")}}});
    press(Qt::Key_V, Qt::AltModifier);
    EXPECT_EQ(QApplication::activePopupWidget(), &menu(0));
    press(Qt::Key_V, Qt::AltModifier);
    EXPECT_EQ(QApplication::activePopupWidget(), &menu(2));
    press(Qt::Key_V, Qt::AltModifier);
    EXPECT_EQ(QApplication::activePopupWidget(), &menu(0));
    QTest::keyClick(&menu(0), Qt::Key_Escape);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(QtMenuBarTest, altWithALetterOfNoTitleReachesTheContent) {
    press(Qt::Key_X, Qt::AltModifier);
    press(Qt::Key_F, Qt::AltModifier | Qt::ShiftModifier);
    press(Qt::Key_F, Qt::AltModifier | Qt::ControlModifier);
    EXPECT_THAT(typedKeys(), ElementsAre("x", "f", "f"));
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(QtMenuBarTest, altWithAKeyOfAKeyboardWithoutLatinLettersOpensTheMenuOfItsPlace) {
    constexpr quint32 scanCodeOfF = 41;
    constexpr int cyrillicA = 0x0410;
    QKeyEvent event(QEvent::KeyPress, cyrillicA, Qt::AltModifier, scanCodeOfF, 0, 0);
    QCoreApplication::sendEvent(&window.content(), &event);
    EXPECT_EQ(QApplication::activePopupWidget(), &menu(0));
    QTest::keyClick(&menu(0), Qt::Key_Escape);
}

TEST_F(QtMenuBarTest, aHeldKeyEquivalentRunsItsActionOnce) {
    press(Qt::Key_O, Qt::ControlModifier);
    for (int i = 0; i < 3; ++i) {
        QKeyEvent held(QEvent::KeyPress, Qt::Key_O, Qt::ControlModifier, "\x0f", true);
        QCoreApplication::sendEvent(&window.content(), &held);
    }
    EXPECT_THAT(calls, ElementsAre("Open"));
    EXPECT_TRUE(root->keys.empty());
}

TEST_F(QtMenuBarTest, afterAChoiceByMouseTheContentHasTheKeyboard) {
    QMenuBar& bar = *window.menuBar();
    QTest::mouseClick(&bar, Qt::LeftButton, {}, bar.actionGeometry(bar.actions()[0]).center());
    ASSERT_EQ(QApplication::activePopupWidget(), &menu(0));
    QTest::mouseClick(&menu(0), Qt::LeftButton, {}, menu(0).actionGeometry(menu(0).actions()[0]).center());
    EXPECT_THAT(calls, ElementsAre("Open"));
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    press(Qt::Key_Down, Qt::NoModifier);
    EXPECT_EQ(root->keys.size(), 1U);
}

TEST_F(QtMenuBarTest, afterAMenuWasClosedByEscapeTheContentHasTheKeyboard) {
    QMenuBar& bar = *window.menuBar();
    QTest::mouseClick(&bar, Qt::LeftButton, {}, bar.actionGeometry(bar.actions()[0]).center());
    ASSERT_EQ(QApplication::activePopupWidget(), &menu(0));
    QTest::keyClick(&menu(0), Qt::Key_Escape);
    ASSERT_EQ(QApplication::activePopupWidget(), nullptr);
    press(Qt::Key_Down, Qt::NoModifier);
    ASSERT_EQ(root->keys.size(), 1U);
    EXPECT_EQ(root->keys[0].key, Key::down);
}

TEST_F(QtMenuBarTest, takesNothingFromTheContent) {
    EXPECT_EQ(root->frame(), (Rect{0, 0, 1100, 720}));
    EXPECT_EQ(window.height(), 720 + window.menuBar()->height());
    window.resize(10, 10);
    serveEvents();
    EXPECT_EQ(root->frame(), (Rect{0, 0, 800, 500}));
}

TEST_F(QtMenuBarTest, setWhileTheWindowIsOpenItLeavesTheContentItsSize) {
    QtWindow bare({"Bare", {1100, 720}, {800, 500}, {}});
    bare.centerAndShow();
    bare.resize(900, 600);
    serveEvents();
    bare.showMenus({{"File", {item("Open", "o")}}});
    serveEvents();
    EXPECT_TRUE(bare.menuBar()->isVisible());
    EXPECT_EQ(bare.content().size(), QSize(900, 600));
    bare.resize(10, 10);
    serveEvents();
    EXPECT_EQ(bare.content().size(), QSize(800, 500));
}

TEST_F(QtMenuBarTest, laterMenusReplaceEarlierOnes) {
    window.showMenus({{"New", {item("Other", "o")}}});
    serveEvents();
    ASSERT_EQ(window.menuBar()->actions().size(), 1);
    press(Qt::Key_O, Qt::ControlModifier);
    press(Qt::Key_1, Qt::ControlModifier);
    EXPECT_THAT(calls, ElementsAre("Other"));
    EXPECT_THAT(typedKeys(), ElementsAre("1"));
    EXPECT_EQ(root->frame(), (Rect{0, 0, 1100, 720}));
}

TEST_F(QtMenuBarTest, anActionMayEndTheProgram) {
    window.showMenus({{"File", {{"Quit", [] { application().terminate(); }, "q"}}}});
    QTimer::singleShot(0, &window, [this] { press(Qt::Key_Q, Qt::ControlModifier); });
    EXPECT_TRUE(loopEnds());
    EXPECT_TRUE(root->keys.empty());
}

TEST_F(QtMenuBarTest, theWindowsGroundStaysItsOwnAndTheBarTheDesktops) {
    const auto plain = std::make_shared<View>();
    window.setContentView(plain);
    const QImage image = window.grab().toImage();
    const int barHeight = window.menuBar()->height();
    EXPECT_EQ(image.pixel(0, barHeight), qRgb(0, 0, 171));
    EXPECT_EQ(image.pixel(1099, barHeight + 719), qRgb(0, 0, 171));
    EXPECT_NE(image.pixel(1000, barHeight / 2), qRgb(0, 0, 171));
}

TEST(QtApplicationMenu, isOfferedByWindowsMadeBeforeAndAfter) {
    int calls = 0;
    const std::vector<Menu> menus{{"File", {{"Open", [&] { ++calls; }, "o"}}}};
    const auto before = application().makeWindow({"Before", {300, 200}, {100, 100}, {}});
    application().setMainMenu(menus);
    EXPECT_EQ(static_cast<QtWindow&>(*before).menuBar()->actions().size(), 1);
    const auto after = application().makeWindow({"After", {300, 200}, {100, 100}, {}});
    EXPECT_EQ(static_cast<QtWindow&>(*after).menuBar()->actions().size(), 1);
    after->centerAndShow();
    EXPECT_EQ(application().content()->size(), QSize(300, 200));
    application().setMainMenu({});
    EXPECT_TRUE(static_cast<QtWindow&>(*after).menuBar()->actions().isEmpty());
}

}  // namespace vantrel::test
