#include "posix/files/OriginalCheck.h"

#include <fcntl.h>
#include <linux/stat.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <optional>
#include <tuple>
#include <utility>
#include <vector>

#include "base/SystemCall.h"
#include "posix/files/FileCopy.h"
#include "posix/files/ItemPlace.h"
#include "posix/files/ReadLease.h"

namespace vantrel {

namespace {

/// Reads until the buffer is full or the file ends, and returns the number of bytes.
std::optional<std::size_t> fill(int file, off_t offset, std::vector<char>& buffer) {
    std::size_t filled = 0;
    while (filled < buffer.size()) {
        const ssize_t count = uninterrupted([&] {
            return ::pread(file, buffer.data() + filled, buffer.size() - filled,
                           offset + static_cast<off_t>(filled));
        });
        if (count < 0) return std::nullopt;
        if (count == 0) break;
        filled += static_cast<std::size_t>(count);
    }
    return filled;
}

[[nodiscard]] std::error_code compareFiles(int one, int other) {
    constexpr std::size_t pieceSize = std::size_t{128} * 1024;
    std::vector<char> piece(pieceSize), otherPiece(pieceSize);
    for (off_t offset = 0;; offset += static_cast<off_t>(pieceSize)) {
        const auto count = fill(one, offset, piece);
        const auto otherCount = fill(other, offset, otherPiece);
        if (!count || !otherCount) return lastError();
        if (*count != *otherCount ||
            !std::equal(piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(*count),
                        otherPiece.begin())) {
            return busy();
        }
        if (*count < pieceSize) return {};
    }
}

[[nodiscard]] std::error_code unlessChanged(bool isUnchanged) {
    return isUnchanged ? std::error_code() : busy();
}

/// Goes through one item, an original or its copy, as the record says: the base of what looks at only one.
class OneTree {
public:
    [[nodiscard]] std::error_code leave(const TreeRecord::Entry&) { return stack_.leave(); }

protected:
    OneTree(const TreeRecord& record, const ItemReference& top)
        : record_(record), top_(top), stack_(top.folder) {}

    bool isTop(const TreeRecord::Entry& entry) const { return &entry == &record_.top(); }
    ItemReference itemOf(const TreeRecord::Entry& entry) const {
        return {stack_.current(), isTop(entry) ? top_.name : entry.name};
    }

    /// Enters a folder, which must hold exactly the names that the record has for it.
    [[nodiscard]] std::error_code enterUnchanged(const TreeRecord::Entry& entry, std::size_t index) {
        if (const std::error_code error = stack_.enter(itemOf(entry).name)) return error;
        Result<std::vector<std::string>> names = stack_.names();
        if (!names) return names.error();
        std::ranges::sort(*names);
        return unlessChanged(*names == record_.namesBelow(index));
    }

    const TreeRecord& record_;
    ItemReference top_;
    FolderStack stack_;
};

/// What is true of an original before it is touched.
class InPlace : public OneTree {
public:
    InPlace(const TreeRecord& record, const ItemReference& original) : OneTree(record, original) {}

    [[nodiscard]] std::error_code enter(const TreeRecord::Entry& entry, std::size_t index) {
        if (const std::error_code error = leaf(entry)) return error;
        return enterUnchanged(entry, index);
    }

    [[nodiscard]] std::error_code leaf(const TreeRecord::Entry& entry) const {
        const ItemReference item = itemOf(entry);
        const Result<struct stat> status = statusOf(item);
        if (!status) return status.error();
        if (!entry.state.isUnchanged(ItemState::of(*status))) return busy();
        struct statx extended {};
        const int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | AT_STATX_DONT_SYNC;
        const auto ask = [&] { return ::statx(item.folder, item.name.c_str(), flags, 0, &extended); };
        if (uninterrupted(ask) != 0) return {};  // then removing it will tell
        const bool isFixed = (extended.stx_attributes & (STATX_ATTR_IMMUTABLE | STATX_ATTR_APPEND)) != 0;
        return isFixed ? std::make_error_code(std::errc::operation_not_permitted) : std::error_code();
    }
};

class Aside : SideBySide {
public:
    Aside(const TreeRecord& record, const ItemReference& original, const ItemReference& copy)
        : SideBySide(record, original, copy) {}

    [[nodiscard]] std::error_code enter(const TreeRecord::Entry& entry, std::size_t index) {
        if (const std::error_code error = compareState(entry)) return error;
        if (const std::error_code error = enterBoth(entry)) return error;
        Result<std::vector<std::string>> names = original_.names();
        if (!names) return names.error();
        std::ranges::sort(*names);
        if (*names != record_.namesBelow(index)) return busy();
        return unlessChanged(!isTop(entry) ||
                             extendedAttributesOf(original_.current()) == record_.topAttributes);
    }

    [[nodiscard]] std::error_code leave(const TreeRecord::Entry&) { return leaveBoth(); }

    [[nodiscard]] std::error_code leaf(const TreeRecord::Entry& entry) const {
        if (const std::error_code error = compareState(entry)) return error;
        if (S_ISLNK(entry.state.mode)) return compareLinks(entry);
        return entry.state.isFile() ? compareFile(entry) : std::error_code();
    }

private:
    [[nodiscard]] std::error_code compareState(const TreeRecord::Entry& entry) const {
        const Result<struct stat> status = statusOf(originalOf(entry));
        if (!status) return status.error();
        const ItemState now = ItemState::of(*status);
        return unlessChanged(isTop(entry) ? entry.state.isSameButForName(now) : entry.state.isUnchanged(now));
    }

    [[nodiscard]] std::error_code compareFile(const TreeRecord::Entry& entry) const {
        const FileDescriptor file = openItem(originalOf(entry), readingFlags);
        if (!file) return lastError();
        if (takeLease(file.number()) == LeaseAnswer::hasWriter) return busy();
        return entry.isUncertain ? compareContent(file.number(), entry) : std::error_code();
    }

    [[nodiscard]] std::error_code compareLinks(const TreeRecord::Entry& entry) const {
        const Result<std::string> target = targetOfLink(originalOf(entry));
        if (!target) return target.error();
        const Result<std::string> other = targetOfLink(copyOf(entry));
        if (!other) return other.error();
        return unlessChanged(*target == *other);
    }
};

/// What is true of a copy that nobody has touched.
class Untouched : public OneTree {
public:
    Untouched(const TreeRecord& record, const ItemReference& copy, const timespec& seen)
        : OneTree(record, copy), seen_(seen) {}

    [[nodiscard]] std::error_code enter(const TreeRecord::Entry& entry, std::size_t index) {
        if (const std::error_code error = compareState(entry)) return error;
        return enterUnchanged(entry, index);
    }

    [[nodiscard]] std::error_code leaf(const TreeRecord::Entry& entry) const {
        if (const std::error_code error = compareState(entry)) return error;
        if (!entry.state.isFile()) return {};
        const FileDescriptor file = openItem(itemOf(entry), readingFlags);
        if (!file) return lastError();
        return unlessChanged(takeLease(file.number()) != LeaseAnswer::hasWriter);
    }

private:
    [[nodiscard]] std::error_code compareState(const TreeRecord::Entry& entry) const {
        const Result<struct stat> status = statusOf(itemOf(entry));
        if (!status) return status.error();
        const ItemState now = ItemState::of(*status);
        const bool isSameKind = ((now.mode ^ entry.state.mode) & S_IFMT) == 0;
        return unlessChanged(isSameKind && (now.isFolder() || now.size == entry.state.size) &&
                             isDatedAsCopied(entry, now));
    }

    /// Some file systems keep dates in steps of two seconds.
    bool isDatedAsCopied(const TreeRecord::Entry& entry, const ItemState& now) const {
        constexpr time_t coarsestDate = 2;  // seconds
        if (isTop(entry)) return now.isFolder() || isSameDate(entry.state, now, coarsestDate);
        return std::tie(now.changed.tv_sec, now.changed.tv_nsec) <= std::tie(seen_.tv_sec, seen_.tv_nsec) &&
               isSameDate(entry.state, now, coarsestDate);
    }

    static bool isSameDate(const ItemState& one, const ItemState& other, time_t coarsest) {
        return std::abs(one.modified.tv_sec - other.modified.tv_sec) <= coarsest;
    }

    timespec seen_;
};

}  // namespace

std::error_code busy() {
    return std::make_error_code(std::errc::device_or_resource_busy);
}

std::error_code SideBySide::enterBoth(const TreeRecord::Entry& entry) {
    if (const std::error_code error = original_.enter(nameOf(entry))) return error;
    return copy_.enter(copyOf(entry).name);
}

std::error_code SideBySide::leaveBoth() {
    if (const std::error_code error = original_.leave()) return error;
    return copy_.leave();
}

std::error_code SideBySide::compareContent(int original, const TreeRecord::Entry& entry) const {
    const FileDescriptor copy = openItem(copyOf(entry), readingFlags);
    if (!copy) return lastError();
    return compareFiles(original, copy.number());
}

std::error_code checkInPlace(const TreeRecord& record, const ItemReference& original) {
    InPlace check(record, original);
    return record.visit(check);
}

std::error_code checkSetAside(const TreeRecord& record, const ItemReference& original,
                              const ItemReference& copy) {
    Aside check(record, original, copy);
    return record.visit(check);
}

std::error_code checkCopy(const TreeRecord& record, const ItemReference& copy, const timespec& seen) {
    Untouched check(record, copy, seen);
    return record.visit(check);
}

}  // namespace vantrel
