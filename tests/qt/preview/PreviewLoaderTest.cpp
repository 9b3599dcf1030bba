#include "qt/preview/PreviewLoader.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QBuffer>
#include <QImageReader>
#include <QImageWriter>
#include <QPainter>
#include <QPdfWriter>
#include <vector>

#include "base/FileDescriptor.h"
#include "qt/preview/PreviewPages.h"
#include "support/TemporaryFolder.h"

namespace vantrel::test {

namespace {

class PreviewLoaderTest : public testing::Test {
protected:
    std::vector<PreviewContent> load(const std::string& path) {
        std::vector<PreviewContent> answers;
        loadPreview({path, {800, 600}, {450, 650}}, stop.get_token(),
                    [&](PreviewContent content) { answers.push_back(std::move(content)); });
        return answers;
    }

    PreviewContent loadOne(const std::string& path) {
        const auto answers = load(path);
        EXPECT_EQ(answers.size(), 1U);
        return answers.empty() ? PreviewContent() : answers.back();
    }

    /// The picture that is shown for a file of that name with these bytes.
    ImageBody loadImage(std::string_view name, const QByteArray& bytes) {
        const PreviewContent content = loadOne(folder.makeFile(name, bytes.toStdString()));
        const auto* image = std::get_if<ImageBody>(&content.body);
        EXPECT_NE(image, nullptr);
        return image == nullptr ? ImageBody() : *image;
    }

    static bool isFactsAlone(const PreviewContent& content) {
        return std::holds_alternative<std::monostate>(content.body);
    }

    TemporaryFolder folder;
    std::stop_source stop;
};

/// A picture whose left half is red and whose right half is blue.
QImage redAndBlue(int width, int height) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::red);
    QPainter(&image).fillRect(width / 2, 0, width - width / 2, height, Qt::blue);
    return image;
}

QByteArray encoded(const QImage& image, const char* format, QImageIOHandler::Transformations turned = {}) {
    QBuffer buffer;
    QImageWriter writer(&buffer, format);
    writer.setTransformation(turned);
    EXPECT_TRUE(writer.write(image)) << qPrintable(writer.errorString());
    return buffer.data();
}

/// A picture of a few grey pixels that claims that size in its frame header (ITU-T T.81, B.2.2).
QByteArray jpegThatSaysItIs(int width, int height) {
    QImage grey(16, 16, QImage::Format_Grayscale8);
    grey.fill(128);
    QByteArray bytes = encoded(grey, "jpg");
    const qsizetype frameHeader = bytes.indexOf("\xFF\xC0");
    EXPECT_GT(frameHeader, 0);
    const auto put = [&](qsizetype offset, int value) {
        bytes[frameHeader + offset] = static_cast<char>(value >> 8);
        bytes[frameHeader + offset + 1] = static_cast<char>(value & 0xFF);
    };
    put(5, height);
    put(7, width);
    return bytes;
}

QByteArray document(int pages) {
    QBuffer buffer;
    EXPECT_TRUE(buffer.open(QIODevice::WriteOnly));
    {
        QPdfWriter writer(&buffer);
        writer.setPageSize(QPageSize(QPageSize::A4));
        writer.setPageMargins({});
        QPainter painter(&writer);
        for (int page = 0; page < pages; ++page) {
            if (page > 0) writer.newPage();
            painter.fillRect(painter.viewport(), page == 0 ? Qt::red : Qt::blue);
        }
    }
    return buffer.data();
}

}  // namespace

TEST_F(PreviewLoaderTest, showsAPicture) {
    const ImageBody body = loadImage("a.png", encoded(redAndBlue(40, 30), "png"));
    EXPECT_EQ(body.fullSize, QSize(40, 30));
    EXPECT_EQ(body.image.size(), QSize(40, 30)) << "never enlarged";
    EXPECT_EQ(body.image.pixel(5, 15), qRgb(255, 0, 0));
    EXPECT_EQ(body.image.pixel(35, 15), qRgb(0, 0, 255));
}

TEST_F(PreviewLoaderTest, scalesALargePictureDown) {
    const ImageBody body = loadImage("a.png", encoded(redAndBlue(4000, 2000), "png"));
    EXPECT_EQ(body.fullSize, QSize(4000, 2000));
    EXPECT_EQ(body.image.size(), QSize(800, 400));
    EXPECT_EQ(body.image.pixel(100, 200), qRgb(255, 0, 0));
    EXPECT_EQ(body.image.pixel(700, 200), qRgb(0, 0, 255));
}

TEST_F(PreviewLoaderTest, scalesAPictureThatIsTooLargeForTheMemoryWhileItIsRead) {
    QByteArray bytes = jpegThatSaysItIs(20000, 20000);
    const ImageBody body = loadImage("a.jpg", bytes);
    EXPECT_EQ(body.fullSize, QSize(20000, 20000));
    EXPECT_EQ(body.image.size(), QSize(600, 600));
    QBuffer buffer(&bytes);
    EXPECT_TRUE(QImageReader(&buffer).read().isNull()) << "read whole it is refused";
}

TEST_F(PreviewLoaderTest, keepsAtLeastOnePixelOfALongPicture) {
    EXPECT_EQ(loadImage("a.png", encoded(redAndBlue(3000, 1), "png")).image.size(), QSize(800, 1));
}

TEST_F(PreviewLoaderTest, turnsAPictureTheWayItWasTaken) {
    const ImageBody body =
        loadImage("a.jpg", encoded(redAndBlue(4000, 2000), "jpg", QImageIOHandler::TransformationRotate90));
    EXPECT_EQ(body.fullSize, QSize(2000, 4000));
    EXPECT_EQ(body.image.size(), QSize(300, 600));
    EXPECT_GT(qRed(body.image.pixel(150, 50)), 200) << "the left half is on top";
    EXPECT_GT(qBlue(body.image.pixel(150, 550)), 200);
}

TEST_F(PreviewLoaderTest, knowsAPictureWhateverItsName) {
    EXPECT_EQ(loadImage("notes.txt", encoded(redAndBlue(40, 30), "png")).fullSize, QSize(40, 30));
    EXPECT_EQ(loadImage("no\xFFname", encoded(redAndBlue(20, 10), "bmp")).fullSize, QSize(20, 10));
}

TEST_F(PreviewLoaderTest, aBrokenPictureHasFactsAlone) {
    QByteArray bytes = encoded(redAndBlue(40, 30), "png");
    bytes.truncate(20);
    const PreviewContent content = loadOne(folder.makeFile("a.png", bytes.toStdString()));
    EXPECT_TRUE(isFactsAlone(content));
    EXPECT_EQ(content.facts.size, 20U);
}

TEST_F(PreviewLoaderTest, showsText) {
    const PreviewContent content = loadOne(folder.makeFile("a.txt", "one\ntwo\n"));
    ASSERT_TRUE(std::holds_alternative<TextBody>(content.body));
    EXPECT_EQ(std::get<TextBody>(content.body).text, "one\ntwo\n");
    EXPECT_EQ(content.facts.size, 8U);
    EXPECT_FALSE(content.facts.kind.isEmpty());
}

TEST_F(PreviewLoaderTest, showsTextOfANameThatIsNotText) {
    const PreviewContent content = loadOne(folder.makeFile("caf\xE9\n", "text"));
    ASSERT_TRUE(std::holds_alternative<TextBody>(content.body));
    EXPECT_EQ(std::get<TextBody>(content.body).text, "text");
}

TEST_F(PreviewLoaderTest, showsTheBeginningOfALongText) {
    const std::string line(99, 'x');
    std::string text;
    for (int i = 0; i < 3000; ++i) text += line + '\n';
    const PreviewContent content = loadOne(folder.makeFile("a.txt", text));
    ASSERT_TRUE(std::holds_alternative<TextBody>(content.body));
    const QString& shown = std::get<TextBody>(content.body).text;
    EXPECT_EQ(shown.size(), 200'001);
    EXPECT_TRUE(shown.endsWith("x\n…"));
    EXPECT_EQ(content.facts.size, 300'000U);
}

TEST_F(PreviewLoaderTest, aTextOfExactlyTheLimitIsShownWhole) {
    const PreviewContent content = loadOne(folder.makeFile("a.txt", std::string(200'000, '\n')));
    ASSERT_TRUE(std::holds_alternative<TextBody>(content.body));
    EXPECT_EQ(std::get<TextBody>(content.body).text.size(), 200'000);
}

TEST_F(PreviewLoaderTest, anythingElseHasFactsAlone) {
    const std::string path = folder.makeFile("a.bin", std::string("\0\1\2\3", 4));
    const timespec times[2] = {{951'782'400, 0}, {951'782'400, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
    const PreviewContent content = loadOne(path);
    EXPECT_TRUE(isFactsAlone(content));
    EXPECT_EQ(content.facts.size, 4U);
    EXPECT_EQ(content.facts.modified.toSecsSinceEpoch(), 951'782'400);
    EXPECT_FALSE(content.facts.kind.isEmpty());
    EXPECT_FALSE(content.facts.isFolder);
}

TEST_F(PreviewLoaderTest, aHugeFileIsNotReadToItsEnd) {
    const std::string path = folder.makeFile("a.bin");
    ASSERT_EQ(::truncate(path.c_str(), off_t{1} << 40), 0);
    const PreviewContent content = loadOne(path);
    EXPECT_TRUE(isFactsAlone(content));
    EXPECT_EQ(content.facts.size, quint64{1} << 40);
}

TEST_F(PreviewLoaderTest, aFolderHasItsKindAndNoSize) {
    const PreviewContent content = loadOne(folder.makeFolder("sub"));
    EXPECT_TRUE(isFactsAlone(content));
    EXPECT_TRUE(content.facts.isFolder);
    EXPECT_FALSE(content.facts.size.has_value());
    EXPECT_TRUE(content.facts.modified.isValid());
}

TEST_F(PreviewLoaderTest, aLinkIsShownAsWhatItPointsTo) {
    const std::string target = folder.makeFile("a.txt", "text");
    EXPECT_TRUE(std::holds_alternative<TextBody>(loadOne(folder.makeLink("link", target)).body));
    EXPECT_TRUE(loadOne(folder.makeLink("up", folder.path())).facts.isFolder);
    const PreviewContent dangling = loadOne(folder.makeLink("lost", folder.path("nowhere")));
    EXPECT_TRUE(isFactsAlone(dangling));
    EXPECT_TRUE(dangling.facts.modified.isValid());
}

TEST_F(PreviewLoaderTest, whatIsGoneHasNoFacts) {
    const PreviewContent content = loadOne(folder.path("gone"));
    EXPECT_TRUE(isFactsAlone(content));
    EXPECT_TRUE(content.facts.kind.isEmpty());
    EXPECT_FALSE(content.facts.modified.isValid());
}

TEST_F(PreviewLoaderTest, aFileThatMustNotBeReadHasFactsAlone) {
    if (::geteuid() == 0) GTEST_SKIP() << "root may read everything";
    const std::string path = folder.makeFile("a.txt", "text");
    ASSERT_EQ(::chmod(path.c_str(), 0), 0);
    const PreviewContent content = loadOne(path);
    EXPECT_TRUE(isFactsAlone(content));
    EXPECT_EQ(content.facts.size, 4U);
}

TEST_F(PreviewLoaderTest, opensNothingThatIsNoRegularFile) {
    const std::string fifo = folder.makeFifo("pipe");
    const std::string socket = folder.makeSocket("socket");
    const std::string link = folder.makeLink("link", fifo);
    const FileDescriptor watch(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
    ASSERT_GE(::inotify_add_watch(watch.number(), fifo.c_str(), IN_OPEN), 0);
    for (const std::string& path : {fifo, socket, link, std::string("/dev/zero"), std::string("/dev/tty")}) {
        const PreviewContent content = loadOne(path);
        EXPECT_TRUE(isFactsAlone(content)) << path;
        EXPECT_FALSE(content.facts.size.has_value()) << path;
        EXPECT_FALSE(content.facts.kind.isEmpty()) << path;
    }
    char events[4096];
    EXPECT_EQ(::read(watch.number(), events, sizeof events), -1) << "somebody opened the FIFO";
}

TEST_F(PreviewLoaderTest, showsAPathLongerThanASystemCallTakes) {
    const std::string deep = folder.makeDeepFolder(30, std::string(200, 'd'));
    EXPECT_GT(deep.size(), 4096U);
    EXPECT_TRUE(loadOne(deep).facts.isFolder);
}

TEST_F(PreviewLoaderTest, readsNoContentOnceItHasBeenStopped) {
    const std::string path = folder.makeFile("a.txt", "text");
    stop.request_stop();
    EXPECT_TRUE(load(path).empty());
}

TEST_F(PreviewLoaderTest, leavesNoFileOpen) {
    const std::string picture = folder.makeFile("a.png", encoded(redAndBlue(40, 30), "png").toStdString());
    const std::string text = folder.makeFile("a.txt", "text");
    load(picture);
    const std::size_t before = openDescriptors();
    load(picture);
    load(text);
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(PreviewLoaderTest, showsTheFirstPagesOfADocumentAsTheyGetReady) {
    if (!canDrawPages("%PDF-")) GTEST_SKIP() << "built without a PDF renderer";
    const auto answers = load(folder.makeFile("a.pdf", document(3).toStdString()));
    ASSERT_EQ(answers.size(), 3U);
    for (std::size_t index = 0; index < answers.size(); ++index) {
        const auto* pages = std::get_if<PagesBody>(&answers[index].body);
        ASSERT_NE(pages, nullptr);
        EXPECT_EQ(pages->pages.size(), static_cast<qsizetype>(index) + 1);
        EXPECT_EQ(pages->pageCount, 3);
    }
    const auto& pages = std::get<PagesBody>(answers.back().body).pages;
    EXPECT_EQ(pages[0].size(), QSize(450, 637)) << "A4, 595 by 842 points, as wide as was asked for";
    EXPECT_EQ(pages[0].pixel(225, 318), qRgb(255, 0, 0));
    EXPECT_EQ(pages[2].pixel(225, 318), qRgb(0, 0, 255));
}

TEST_F(PreviewLoaderTest, showsNoMoreThanTwentyPages) {
    if (!canDrawPages("%PDF-")) GTEST_SKIP() << "built without a PDF renderer";
    EXPECT_EQ(load(folder.makeFile("a.pdf", document(25).toStdString())).size(), 20U);
}

TEST_F(PreviewLoaderTest, aBrokenDocumentHasFactsAlone) {
    EXPECT_TRUE(isFactsAlone(loadOne(folder.makeFile("a.pdf", "%PDF-1.7\nand nothing else\n"))));
}

}  // namespace vantrel::test
