#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <QByteArray>
#include <QImageReader>
#include <QtEndian>
#include <array>
#include <cstdint>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "qt/preview/PreviewImage.h"
#include "qt/preview/PreviewLoader.h"
#include "qt/preview/PreviewText.h"
#include "support/HostileNames.h"
#include "support/TemporaryFolder.h"

// Files made to eat memory or time, and names made to be misread.

namespace vantrel::test {

namespace {

/// What a picture may cost at most: its file is read into memory by some decoders (256 MB), the picture takes
/// as much again, and what is scaled down comes on top.
constexpr std::int64_t mostMemory = std::int64_t{640} << 20;  // bytes

/// Peak resident memory of this process since `forgetPeak`, in bytes; 0 where the system does not tell.
std::int64_t peakMemory() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmHWM:")) return std::stoll(line.substr(6)) * 1024;
    }
    return 0;
}

bool forgetPeak() {
    std::ofstream file("/proc/self/clear_refs");
    file << "5" << std::flush;
    return static_cast<bool>(file);
}

class PreviewBounds : public testing::Test {
protected:
    PreviewContent load(const std::string& path) const {
        PreviewContent last;
        loadPreview({path, {800, 600}, {450, 650}}, std::stop_token(),
                    [&](PreviewContent content) { last = std::move(content); });
        return last;
    }

    /// Expects nothing but facts to be shown, and finding that out to have kept to the memory limit.
    void expectRefused(const std::string& name, const QByteArray& bytes) const {
        const std::string path = folder.makeFile(name, bytes.toStdString());
        const bool isMeasured = forgetPeak();
        const std::int64_t before = peakMemory();
        const PreviewContent content = load(path);
        EXPECT_FALSE(std::holds_alternative<ImageBody>(content.body)) << name;
        EXPECT_EQ(content.facts.size, static_cast<quint64>(bytes.size())) << name;
        if (isMeasured) {
            EXPECT_LT(peakMemory() - before, mostMemory) << name;
        }
    }

    TemporaryFolder folder;
};

std::uint32_t crc(const QByteArray& bytes) {
    std::uint32_t value = 0xFFFFFFFF;
    for (const char byte : bytes) {
        value ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit) value = (value >> 1) ^ ((value & 1) != 0 ? 0xEDB88320U : 0U);
    }
    return ~value;
}

template <class Number>
QByteArray bigEndian(Number number) {
    const Number swapped = qToBigEndian(number);
    return {reinterpret_cast<const char*>(&swapped), sizeof swapped};
}

template <class Number>
QByteArray littleEndian(Number number) {
    const Number swapped = qToLittleEndian(number);
    return {reinterpret_cast<const char*>(&swapped), sizeof swapped};
}

/// A chunk of a PNG file (RFC 2083, 3.2).
QByteArray chunk(const QByteArray& kind, const QByteArray& content) {
    return bigEndian(static_cast<quint32>(content.size())) + kind + content + bigEndian(crc(kind + content));
}

QByteArray pngThatSaysItIs(quint32 width, quint32 height, const QByteArray& pixels) {
    const QByteArray header =
        bigEndian(width) + bigEndian(height) + QByteArray::fromRawData("\x08\x02\x00\x00\x00", 5);
    // qCompress puts the length before the zlib stream.
    return QByteArray("\x89PNG\r\n\x1a\n") + chunk("IHDR", header) + chunk("IDAT", qCompress(pixels).mid(4)) +
           chunk("IEND", {});
}

QByteArray bmpThatSaysItIs(qint32 width, qint32 height) {
    return QByteArray("BM") + littleEndian(quint32{1000}) + littleEndian(quint32{0}) +
           littleEndian(quint32{54}) + littleEndian(quint32{40}) + littleEndian(width) +
           littleEndian(height) + littleEndian(quint16{1}) + littleEndian(quint16{24}) +
           QByteArray(24, '\0') + QByteArray(100, 'x');
}

QByteArray gifThatSaysItIs(quint16 width, quint16 height) {
    return QByteArray("GIF89a") + littleEndian(width) + littleEndian(height) +
           QByteArray::fromRawData("\x80\0\0\xFF\0\0\0\xFF\0,\0\0\0\0", 14) + littleEndian(width) +
           littleEndian(height) + QByteArray::fromRawData("\0\2\2\x44\1\0;", 7);
}

}  // namespace

TEST_F(PreviewBounds, picturesThatSayTheyAreHugeAreRefused) {
    expectRefused("wide.png", pngThatSaysItIs(0x7FFFFFFF, 1, "abc"));
    expectRefused("large.png", pngThatSaysItIs(60'000, 60'000, "abc"));
    expectRefused("large.gif", gifThatSaysItIs(65535, 65535));
    expectRefused("large.bmp", bmpThatSaysItIs(60'000, 60'000));
    expectRefused("tall.bmp", bmpThatSaysItIs(1, 0x7FFFFFFF));
    expectRefused("negative.bmp", bmpThatSaysItIs(-5, 5));
    expectRefused("large.ppm", "P6\n100000 100000\n255\nxxxxxxxx");
    expectRefused("huge.pgm", "P5\n2147483647 2147483647\n255\nxxxxxxxx");
}

TEST_F(PreviewBounds, aPictureOfFewBytesAndManyPixelsIsGivenUpWhenItIsTold) {
    // 80 kilobytes that unpack to 80 megabytes, while the decoder believes that there are a thousand more.
    const QByteArray bytes = pngThatSaysItIs(20'000, 20'000, QByteArray(80'000'000, '\0'));
    constexpr qsizetype firstPart = 20'000;
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
    FileDescriptor writer(ends[1]);
    const int kept = ::dup(ends[0]);
    const FileDescriptor rest(kept);
    std::stop_source stop;
    StoppableFile file(FileDescriptor{ends[0]}, stop.get_token());
    std::optional<ImageBody> image;
    std::jthread decoder([&] { image = decodeImage(file, {800, 600}); });
    ASSERT_EQ(::write(writer.number(), bytes.data(), firstPart), firstPart);
    // The decoder takes what is there and waits for more.
    int waiting = 1;
    while (waiting > 0) ASSERT_EQ(::ioctl(rest.number(), FIONREAD, &waiting), 0);
    stop.request_stop();
    const qsizetype secondPart = std::min<qsizetype>(bytes.size() - firstPart, 60'000);
    ASSERT_EQ(::write(writer.number(), bytes.data() + firstPart, static_cast<std::size_t>(secondPart)),
              secondPart);
    writer.close();
    decoder.join();
    EXPECT_FALSE(image);
    EXPECT_EQ(::ioctl(rest.number(), FIONREAD, &waiting), 0);
    EXPECT_GT(waiting, 0) << "it read on to the end";
}

TEST_F(PreviewBounds, textsOfEveryShapeAreShownWithinTheirBounds) {
    const std::array<std::string, 8> texts = {
        std::string(5'000'000, 'x'),
        std::string(5'000'000, '\n'),
        std::string(5'000'000, '['),
        std::string(5'000'000, '\t'),
        QByteArray("<a>").repeated(1'000'000).toStdString(),
        QByteArray("e\xCC\x81\xCC\x82\xCC\x83").repeated(300'000).toStdString(),
        QByteArray("\xE2\x80\xAE\xD7\xA9").repeated(300'000).toStdString(),
        QByteArray("\x1b[31m").repeated(300'000).toStdString(),
    };
    for (std::size_t index = 0; index < texts.size(); ++index) {
        const PreviewContent content =
            load(folder.makeFile("text" + std::to_string(index) + ".txt", texts[index]));
        const auto* body = std::get_if<TextBody>(&content.body);
        ASSERT_NE(body, nullptr) << index;
        EXPECT_LE(body->text.size(), longestText + longestText / 1000 + 1) << index;
        for (const QString& line : body->text.split(u'\n')) EXPECT_LE(line.size(), 1001) << index;
    }
}

TEST_F(PreviewBounds, aFileThatGrowsWithoutEndIsReadToALimit) {
    // The first has content although its size is 0, the second seems to have no end.
    const PreviewContent content = load("/proc/self/maps");
    EXPECT_TRUE(std::holds_alternative<TextBody>(content.body));
    const std::string endless = folder.makeFile("endless.txt", std::string(300'000, 'a'));
    ASSERT_EQ(::truncate(endless.c_str(), off_t{1} << 40), 0);
    EXPECT_TRUE(std::holds_alternative<TextBody>(load(endless).body));
}

TEST_F(PreviewBounds, everyNameIsReadAsItself) {
    const std::vector<std::string> names = hostileNames(0);
    for (const std::string& name : names) {
        const std::string text = "this is " + std::to_string(std::hash<std::string>()(name));
        const PreviewContent content = load(folder.makeFile(name, text));
        const auto* body = std::get_if<TextBody>(&content.body);
        ASSERT_NE(body, nullptr) << testing::PrintToString(name);
        EXPECT_EQ(body->text.toStdString(), text);
    }
    RecordProperty("cases", static_cast<int>(names.size()));
}

}  // namespace vantrel::test
