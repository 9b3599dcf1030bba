#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QLineEdit>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

#include "qt/QtTestSupport.h"
#include "qt/QtTextField.h"

namespace vantrel::test {

namespace {

const Alert alert{"A message & more", "What it means.\n\nIn <b>two</b> parts.", "OK"};

QMessageBox* openBox() {
    return dynamic_cast<QMessageBox*>(QApplication::activeModalWidget());
}

/// Runs `alert` and, once it is open, `act`.
template <class Act>
void runAlert(Act act) {
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, [&] {
        if (openBox() == nullptr) return;
        look.stop();
        act();
    });
    look.start(0);
    application().runModal(alert);
}

class QtAlertTest : public testing::Test {
protected:
    QtAlertTest() {
        window->setContentView(root);
        window->centerAndShow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(content().window()));
    }

    static QtContentWidget& content() { return *application().content(); }

    std::shared_ptr<RecordingView> root = std::make_shared<RecordingView>();
    std::unique_ptr<Window> window = application().makeWindow({"Alert", {600, 400}, {100, 100}, {}});
};

}  // namespace

TEST_F(QtAlertTest, showsItsTextsToTheLetterAndOneButton) {
    int seen = 0;
    runAlert([&] {
        QMessageBox* const box = openBox();
        ASSERT_NE(box, nullptr);
        ++seen;
        EXPECT_EQ(box->icon(), QMessageBox::Information);
        EXPECT_EQ(box->text(), "A message & more");
        EXPECT_EQ(box->informativeText(), "What it means.\n\nIn <b>two</b> parts.");
        EXPECT_EQ(box->textFormat(), Qt::PlainText);
        ASSERT_EQ(box->buttons().size(), 1);
        EXPECT_EQ(box->buttons()[0]->text(), "OK");
        QTest::mouseClick(box->buttons()[0], Qt::LeftButton);
    });
    EXPECT_EQ(seen, 1);
    EXPECT_EQ(openBox(), nullptr);
}

TEST_F(QtAlertTest, returnAndEscapeAnswerIt) {
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
        runAlert([&] { QTest::keyClick(openBox(), key); });
        EXPECT_EQ(openBox(), nullptr);
    }
    EXPECT_TRUE(root->keys.empty());
}

TEST_F(QtAlertTest, leavesTheKeyboardToTheContent) {
    runAlert([] { openBox()->accept(); });
    ASSERT_TRUE(QTest::qWaitForWindowActive(content().window()));
    EXPECT_TRUE(content().hasFocus());
    QTest::keyClick(content().window()->windowHandle(), Qt::Key_Down);
    EXPECT_EQ(root->keys.size(), 1U);
}

TEST_F(QtAlertTest, leavesTheKeyboardToTheFieldThatHadIt) {
    const auto field = makeQtTextField(content(), {mono, white, black});
    field->setFrame({10, 10, 200, 26});
    field->focusAndSelectAll();
    runAlert([] { openBox()->accept(); });
    ASSERT_TRUE(QTest::qWaitForWindowActive(content().window()));
    EXPECT_TRUE(content().findChild<QLineEdit*>()->hasFocus());
}

TEST_F(QtAlertTest, keepsTheKeyEquivalentsOfTheMenuToItselfWhileItIsOpen) {
    int calls = 0;
    application().setMainMenu({{"File", {{"Open", [&] { ++calls; }, "o"}}}});
    runAlert([] {
        QTest::keyClick(openBox(), Qt::Key_O, Qt::ControlModifier);
        openBox()->accept();
    });
    EXPECT_EQ(calls, 0);
    application().setMainMenu({});
}

TEST_F(QtAlertTest, endsWithTheProgram) {
    bool returned = false;
    QTimer::singleShot(0, qApp, [&] {
        runAlert([] { application().terminate(); });
        returned = true;
    });
    EXPECT_TRUE(loopEnds());
    EXPECT_TRUE(returned);
}

TEST_F(QtAlertTest, endsWithItsWindow) {
    runAlert([&] { window.reset(); });
    EXPECT_EQ(openBox(), nullptr);
}

namespace {

/// Sends keys as the window system does: they wait until somebody asks for events.
void typeAhead(QWindow* window, std::initializer_list<Qt::Key> keys) {
    for (const Qt::Key key : keys) {
        QTimer::singleShot(0, window, [window, key] { QTest::keyClick(window, key); });
    }
}

}  // namespace

TEST_F(QtAlertTest, keysTypedAheadAnswerItAndGoOnToTheContent) {
    typeAhead(content().window()->windowHandle(), {Qt::Key_Down, Qt::Key_Return, Qt::Key_Up});
    application().runModal(alert);
    EXPECT_EQ(openBox(), nullptr);
    ASSERT_EQ(root->keys.size(), 1U) << "what follows the answer";
    EXPECT_EQ(root->keys[0].key, Key::up);
}

TEST(QtAlert, needsNoWindow) {
    int seen = 0;
    runAlert([&] {
        ASSERT_NE(openBox(), nullptr);
        ++seen;
        openBox()->accept();
    });
    EXPECT_EQ(seen, 1);
}

}  // namespace vantrel::test
