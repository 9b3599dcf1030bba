#include "qt/preview/QtPreviewPanel.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QTest>
#include <QTimer>

#include "qt/preview/PreviewPanelFixture.h"
#include "support/TemporaryFolder.h"

namespace vantrel::test {

namespace {

class QtPreviewPanelTest : public PreviewPanelFixture {
protected:
    TemporaryFolder folder;
};

QByteArray redPicture() {
    QImage image(300, 200, QImage::Format_RGB32);
    image.fill(Qt::red);
    QBuffer buffer;
    EXPECT_TRUE(image.save(&buffer, "png"));
    return buffer.data();
}

}  // namespace

TEST_F(QtPreviewPanelTest, isHiddenUntilItIsAskedFor) {
    const QtPreviewPanel panel(application(), queue);
    EXPECT_FALSE(panel.isVisible());
}

TEST_F(QtPreviewPanelTest, showsAPictureInTheMiddleOfAWindowWithItsName) {
    source->item = itemAt(folder.makeFile("red\xFF.png", redPicture().toStdString()));
    source->item->name = "red\uFFFD.png";
    QtPreviewPanel panel(application(), queue);
    open(panel);
    QtPreviewWindow& window = *panel.window();
    ASSERT_TRUE(comes([&] { return window.shown() == window.image(); }));
    EXPECT_EQ(window.windowTitle(), "red\uFFFD.png");
    EXPECT_TRUE(window.caption()->isVisible());
    EXPECT_TRUE(window.caption()->text().contains("300 × 200"));
    const QImage seen = window.image()->grab().toImage();
    EXPECT_EQ(seen.pixel(seen.rect().center()), qRgb(255, 0, 0));
    EXPECT_NE(seen.pixel(10, 10), qRgb(255, 0, 0)) << "it is not enlarged";
}

TEST_F(QtPreviewPanelTest, showsAPictureOfAnySizeWhole) {
    source->item = itemAt(folder.makeFile("red.png", redPicture().toStdString()));
    QtPreviewPanel panel(application(), queue);
    open(panel);
    QtPreviewWindow& window = *panel.window();
    ASSERT_TRUE(comes([&] { return window.shown() == window.image(); }));
    window.resize(240, 400);
    serveEvents();
    const QImage seen = window.image()->grab().toImage();
    EXPECT_EQ(seen.pixel(1, seen.height() / 2), qRgb(255, 0, 0));
    EXPECT_EQ(seen.pixel(238, seen.height() / 2), qRgb(255, 0, 0));
    EXPECT_NE(seen.pixel(120, seen.height() / 2 - 90), qRgb(255, 0, 0)) << "240 by 160 points of it";
}

TEST_F(QtPreviewPanelTest, showsTextInAFixedPitch) {
    source->item = itemAt(folder.makeFile("notes", "one\ntwo"));
    QtPreviewPanel panel(application(), queue);
    open(panel);
    ASSERT_TRUE(comes([&] { return showsText(panel, "one\ntwo"); }));
    EXPECT_TRUE(QFontInfo(panel.window()->text()->font()).fixedPitch());
}

TEST_F(QtPreviewPanelTest, showsAFoldersNameAndItsTotalAsSoonAsItIsKnown) {
    source->item = itemAt(folder.makeFolder("sub"));
    QtPreviewPanel panel(application(), queue);
    open(panel);
    ASSERT_TRUE(comes([&] { return showsFacts(panel, "sub"); }));
    EXPECT_FALSE(panel.window()->facts()->lines().contains("4.8 M"));
    EXPECT_FALSE(panel.window()->caption()->isVisible());
    source->item->detail = "4.8 M";
    EXPECT_TRUE(comes([&] { return panel.window()->facts()->lines().contains("4.8 M"); }));
}

TEST_F(QtPreviewPanelTest, showsAnIconForAnythingElse) {
    source->item = itemAt(folder.makeFile("a.bin", std::string(5, '\0')));
    QtPreviewPanel panel(application(), queue);
    open(panel);
    ASSERT_TRUE(comes([&] { return panel.window()->facts()->lines().contains("5 bytes"); }));
    const QImage seen = panel.window()->facts()->grab().toImage();
    const QRgb ground = seen.pixel(2, 2);
    int inked = 0;
    for (int y = 0; y < seen.height(); ++y) inked += seen.pixel(seen.width() / 2, y) != ground ? 1 : 0;
    EXPECT_GT(inked, 50);
}

TEST_F(QtPreviewPanelTest, isNotHeldUpByAFifo) {
    source->item = itemAt(folder.makeFifo("pipe"));
    QtPreviewPanel panel(application(), queue);
    open(panel);
    EXPECT_TRUE(comes([&] { return showsFacts(panel, "pipe"); }));
}

TEST_F(QtPreviewPanelTest, isAnEmptyWindowWithoutAnItem) {
    QtPreviewPanel panel(application(), queue, files.loader());
    open(panel);
    EXPECT_EQ(panel.window()->shown(), panel.window()->empty());
    source->item = itemAt("/a");
    ASSERT_TRUE(comes([&] { return showsText(panel, "/a"); }));
    source->item.reset();
    source->isParent = true;
    EXPECT_TRUE(comes([&] { return panel.window()->shown() == panel.window()->empty(); }));
    EXPECT_EQ(panel.window()->windowTitle(), "Preview");
    EXPECT_EQ(panel.window()->text()->toPlainText(), "");
}

TEST_F(QtPreviewPanelTest, isAnEmptyWindowWithoutADataSource) {
    QtPreviewPanel panel(application(), queue, files.loader());
    ASSERT_TRUE(opensOn(panel, "/a"));
    source.reset();
    EXPECT_TRUE(comes([&] { return panel.window()->shown() == panel.window()->empty(); }));
}

TEST_F(QtPreviewPanelTest, followsItsDataSource) {
    QtPreviewPanel panel(application(), queue, files.loader());
    ASSERT_TRUE(opensOn(panel, "/a"));
    source->item = itemAt("/b");
    EXPECT_TRUE(comes([&] { return showsText(panel, "/b"); }));
    EXPECT_EQ(panel.window()->windowTitle(), "b");
}

TEST_F(QtPreviewPanelTest, readsAFileOnceWhileOnlyItsDetailChanges) {
    QtPreviewPanel panel(application(), queue, files.loader());
    ASSERT_TRUE(opensOn(panel, "/a"));
    source->item->detail = "1 K";
    EXPECT_TRUE(comes([&] { return panel.window()->facts()->lines().contains("1 K"); }));
    EXPECT_EQ(files.asked(), 1);
}

TEST_F(QtPreviewPanelTest, aHangingFileHoldsUpNothingAndItsLateAnswerIsDropped) {
    source->item = itemAt("/hanging");
    QtPreviewPanel panel(application(), queue, files.loader());
    open(panel);
    EXPECT_TRUE(comes([&] { return showsFacts(panel, "hanging"); })) << "its name is known at least";
    source->item = itemAt("/b");
    ASSERT_TRUE(comes([&] { return showsText(panel, "/b"); }));
    files.release();
    ASSERT_TRUE(comes([&] { return files.answered() == 2; }));
    bool isServed = false;
    queue.post([&] { isServed = true; });
    ASSERT_TRUE(comes([&] { return isServed; }));
    EXPECT_TRUE(showsText(panel, "/b"));
    EXPECT_EQ(panel.window()->windowTitle(), "b");
}

TEST_F(QtPreviewPanelTest, anAnswerForAnItemThatCameBackIsShown) {
    QtPreviewPanel panel(application(), queue, files.loader());
    ASSERT_TRUE(opensOn(panel, "/a"));
    source->item = itemAt("/silent");
    ASSERT_TRUE(comes([&] { return showsFacts(panel, "silent"); }));
    source->item = itemAt("/a");
    EXPECT_TRUE(comes([&] { return showsText(panel, "/a"); }));
}

TEST_F(QtPreviewPanelTest, itsEndDoesNotWaitForAHangingFile) {
    source->item = itemAt("/hanging");
    {
        QtPreviewPanel panel(application(), queue, files.loader());
        open(panel);
        ASSERT_TRUE(comes([&] { return showsFacts(panel, "hanging"); }));
    }
    files.release();
}

TEST_F(QtPreviewPanelTest, canBeClosedByTheWindowManagerAndOpenedAgain) {
    QtPreviewPanel panel(application(), queue, files.loader());
    ASSERT_TRUE(opensOn(panel, "/a"));
    panel.window()->close();
    EXPECT_FALSE(panel.isVisible());
    EXPECT_EQ(panel.window()->text()->toPlainText(), "") << "a closed preview keeps nothing";
    open(panel);
    EXPECT_TRUE(comes([&] { return showsText(panel, "/a"); }));
}

TEST_F(QtPreviewPanelTest, standsInTheMiddleOfItsOwner) {
    QtPreviewPanel panel(application(), queue, files.loader());
    open(panel);
    EXPECT_EQ(panel.window()->parentWidget(), ownersWindow());
    EXPECT_EQ(panel.window()->geometry().center(), ownersWindow()->geometry().center());
}

TEST_F(QtPreviewPanelTest, doesNotKeepTheProgramAliveWhenItsOwnerCloses) {
    QtPreviewPanel panel(application(), queue, files.loader());
    open(panel);
    QTimer::singleShot(0, ownersWindow(), &QWidget::close);
    EXPECT_TRUE(loopEnds());
}

TEST_F(QtPreviewPanelTest, goesWithItsOwnerAndCanBeOpenedForTheNext) {
    source->item = itemAt("/a");
    QtPreviewPanel panel(application(), queue, files.loader());
    open(panel);
    owner.reset();
    EXPECT_FALSE(panel.isVisible());
    panel.orderOut();
    owner = application().makeWindow({"Next", {300, 200}, {100, 100}, {}});
    owner->centerAndShow();
    open(panel);
    EXPECT_TRUE(comes([&] { return showsText(panel, "/a"); }));
}

TEST_F(QtPreviewPanelTest, anAnswerThatComesAfterItsWindowHasGoneIsDropped) {
    source->item = itemAt("/hanging");
    QtPreviewPanel panel(application(), queue, files.loader());
    open(panel);
    ASSERT_TRUE(comes([&] { return files.asked() == 1; }));
    owner.reset();
    files.release();
    ASSERT_TRUE(comes([&] { return files.answered() == 1; }));
    bool isServed = false;
    queue.post([&] { isServed = true; });
    EXPECT_TRUE(comes([&] { return isServed; }));
    EXPECT_FALSE(panel.isVisible());
}

}  // namespace vantrel::test
