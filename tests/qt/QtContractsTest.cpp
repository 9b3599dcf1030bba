#include <gtest/gtest.h>

#include <QLineEdit>
#include <QString>
#include <QTest>
#include <map>
#include <memory>

#include "qt/QtFontCatalog.h"
#include "qt/QtTestSupport.h"
#include "qt/QtTextField.h"
#include "qt/QtWindow.h"
#include "qt/preview/PreviewPanelFixture.h"
#include "support/FontCatalogContract.h"
#include "support/PreviewPanelContract.h"
#include "support/TextFieldContract.h"

// The contracts of these ports, which their fakes fulfil in core-tests, tried on the real implementations.

namespace vantrel::test {

namespace {

void press(QWidget& widget, Key key) {
    static const std::map<Key, Qt::Key> keys{{Key::returnKey, Qt::Key_Return},
                                             {Key::escape, Qt::Key_Escape},
                                             {Key::tab, Qt::Key_Tab},
                                             {Key::space, Qt::Key_Space},
                                             {Key::down, Qt::Key_Down},
                                             {Key::pageUp, Qt::Key_PageUp},
                                             {Key::f1, Qt::Key_F1},
                                             {Key::f7, Qt::Key_F7},
                                             {Key::f10, Qt::Key_F10}};
    QTest::keyClick(&widget, keys.at(key));
}

}  // namespace

class QtTextFieldSubject {
public:
    QtTextFieldSubject() {
        window_.setContentView(root_);
        window_.centerAndShow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window_));
    }

    std::unique_ptr<TextField> makeField() {
        return makeQtTextField(window_.content(), {mono, {1, 1, 1}, {0, 0, 0.4}});
    }
    void type(const std::string& letters) { QTest::keyClicks(edit(), QString::fromStdString(letters)); }
    void press(Key key) { test::press(*edit(), key); }

private:
    QLineEdit* edit() { return window_.content().findChild<QLineEdit*>(); }

    std::shared_ptr<RecordingView> root_ = std::make_shared<RecordingView>();
    QtWindow window_{{"Field", {400, 300}, {100, 100}, {}}};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Qt, TextFieldContract, QtTextFieldSubject);

class QtFontCatalogSubject {
public:
    const FontCatalog& fonts() const { return fonts_; }
    static std::string installed() { return mono.family; }
    static std::string withoutBold() { return "No Such Family"; }

private:
    QtFontCatalog fonts_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(Qt, FontCatalogContract, QtFontCatalogSubject);

class QtPreviewPanelSubject {
public:
    QtPreviewPanelSubject() {
        owner_->setContentView(root_);
        owner_->centerAndShow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(application().content()->window()));
    }

    PreviewPanel& panel() { return panel_; }
    void press(Key key) {
        EXPECT_TRUE(QTest::qWaitForWindowActive(panel_.window()));
        test::press(*panel_.window(), key);
    }

private:
    std::shared_ptr<RecordingView> root_ = std::make_shared<RecordingView>();
    std::unique_ptr<Window> owner_ = application().makeWindow({"Owner", {1100, 720}, {100, 100}, {}});
    FakeFiles files_;
    QtPreviewPanel panel_{application(), previewQueue(), files_.loader()};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Qt, PreviewPanelContract, QtPreviewPanelSubject);

}  // namespace vantrel::test
