#include "qt/preview/PreviewLoader.h"

#include <QMimeDatabase>
#include <QMimeType>
#include <algorithm>
#include <utility>

#include "base/Paths.h"
#include "qt/preview/PreviewFile.h"
#include "qt/preview/PreviewImage.h"
#include "qt/preview/PreviewPages.h"
#include "qt/preview/PreviewText.h"

namespace vantrel {

namespace {

constexpr qsizetype mimeSample = 16384;  // bytes

const char* mimeNameOf(mode_t mode) {
    switch (mode & S_IFMT) {
        case S_IFDIR:
            return "inode/directory";
        case S_IFIFO:
            return "inode/fifo";
        case S_IFSOCK:
            return "inode/socket";
        case S_IFCHR:
            return "inode/chardevice";
        case S_IFBLK:
            return "inode/blockdevice";
        case S_IFLNK:
            return "inode/symlink";
        default:
            return "application/octet-stream";
    }
}

QDateTime modificationTime(const struct stat& file) {
#ifdef __APPLE__
    return QDateTime::fromSecsSinceEpoch(file.st_mtimespec.tv_sec);
#else
    return QDateTime::fromSecsSinceEpoch(file.st_mtim.tv_sec);
#endif
}

void setKind(PreviewFacts& facts, const QMimeType& type) {
    facts.kind = type.comment();
    facts.iconName = type.iconName();
    facts.genericIconName = type.genericIconName();
}

PreviewFacts factsOf(const struct stat& file) {
    PreviewFacts facts;
    setKind(facts, QMimeDatabase().mimeTypeForName(QLatin1String(mimeNameOf(file.st_mode))));
    facts.isFolder = S_ISDIR(file.st_mode);
    facts.modified = modificationTime(file);
    if (S_ISREG(file.st_mode)) facts.size = static_cast<quint64>(file.st_size);
    return facts;
}

class Loading {
public:
    Loading(const PreviewRequest& request, std::stop_token stop,
            const std::function<void(PreviewContent)>& show)
        : request_(request), stop_(std::move(stop)), show_(show) {}

    void run() {
        const Result<struct stat> found = lookAt(request_.path);
        if (found) content_.facts = factsOf(*found);
        if (stop_.stop_requested()) return;
        if (!found || !S_ISREG(found->st_mode) || !showRegularFile()) show_(content_);
    }

private:
    /// False when there is nothing to show but facts.
    bool showRegularFile() {
        Result<FileDescriptor> file = openRegularFile(request_.path);
        // One byte more than is shown tells whether that is all.
        const QByteArray beginning = file ? firstBytes(*file, longestText + 1, stop_) : QByteArray();
        setKind(content_.facts, QMimeDatabase().mimeTypeForFileNameAndData(
                                    QString::fromStdString(paths::lastComponent(request_.path)),
                                    beginning.first(std::min(beginning.size(), mimeSample))));
        if (beginning.isEmpty()) return false;
        StoppableFile device(std::move(*file), stop_);
        if (!device.isOpen()) return false;
        if (canDrawPages(beginning) && showPages(device)) return true;
        device.seek(0);
        return showImage(device) || showText(beginning);
    }

    bool showPages(StoppableFile& device) {
        return drawPages(device, request_.pageBox, stop_, [this](const PagesBody& pages) {
            content_.body = pages;
            show_(content_);
        });
    }

    bool showImage(StoppableFile& device) {
        const std::optional<ImageBody> image = decodeImage(device, request_.imageBox);
        if (!image) return false;
        content_.body = *image;
        show_(content_);
        return true;
    }

    bool showText(const QByteArray& beginning) {
        // Some documents happen to hold nothing but readable characters.
        if (beginning.startsWith("%PDF-")) return false;
        const bool isWhole = beginning.size() <= longestText;
        const std::optional<TextBody> text =
            isWhole ? decodeText(beginning, TextPart::whole)
                    : decodeText(beginning.first(longestText), TextPart::beginning);
        if (!text) return false;
        content_.body = *text;
        show_(content_);
        return true;
    }

    const PreviewRequest& request_;
    const std::stop_token stop_;
    const std::function<void(PreviewContent)>& show_;
    PreviewContent content_;
};

}  // namespace

void loadPreview(const PreviewRequest& request, const std::stop_token& stop,
                 const std::function<void(PreviewContent)>& show) {
    Loading(request, stop, show).run();
}

}  // namespace vantrel
