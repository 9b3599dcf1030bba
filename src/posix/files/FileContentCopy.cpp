#include "posix/files/FileContentCopy.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <limits>
#include <vector>

#include "base/SystemCall.h"

namespace vantrel {

namespace {

constexpr std::size_t bufferSize = std::size_t{256} * 1024;
/// How much the kernel copies at a time, and how much is written before it is sent to the disk: little enough
/// that a request to stop need not wait long.
constexpr std::size_t largestKernelCopy = std::size_t{4} << 20;
constexpr off_t writtenAtATime = off_t{16} << 20;

bool meansOtherwise(const std::error_code& error) {
    return error == std::errc::cross_device_link || error == std::errc::invalid_argument ||
           error == std::errc::function_not_supported || error == std::errc::operation_not_supported ||
           error == std::errc::operation_not_permitted || error == std::errc::bad_file_descriptor;
}

class ContentCopy {
public:
    ContentCopy(const CopyTask& task, int from, int to) : task_(task), from_(from), to_(to) {}

    [[nodiscard]] std::error_code run(const struct stat& status) {
        if (sharesBlocks()) return {};
        if (status.st_size == 0) return copyThroughBuffer(0, std::numeric_limits<off_t>::max());
        if (const std::error_code error = copyData(status)) return error;
        // Makes the hole at the end, and only where there is one: some file systems flush the file for this.
        if (writtenEnd_ == end_) return {};
        return uninterrupted([&] { return ::ftruncate(to_, end_); }) == 0 ? std::error_code() : lastError();
    }

private:
    bool sharesBlocks() const {
#ifdef FICLONE
        return uninterrupted([&] { return ::ioctl(to_, FICLONE, from_); }) == 0;
#else
        return false;
#endif
    }

    [[nodiscard]] std::error_code copyData(const struct stat& status) {
        end_ = status.st_size;
        for (off_t begin = 0; begin < end_;) {
            off_t stop = end_;
            const off_t data = ::lseek(from_, begin, SEEK_DATA);
            // A file that takes up room on the disk holds something, though some file systems deny it.
            const bool isBelievable = begin > 0 || status.st_blocks == 0;
            if (data == -1 && errno == ENXIO && isBelievable) return endAtHole();
            if (data != -1) {
                begin = data;
                const off_t hole = ::lseek(from_, begin, SEEK_HOLE);
                if (hole != -1) stop = std::min(hole, end_);
            }
            if (const std::error_code error = copySegment(begin, stop)) return error;
            begin = stop;
        }
        return {};
    }

    /// The rest is a hole, up to an end that may have come closer since.
    [[nodiscard]] std::error_code endAtHole() {
        const off_t actualEnd = ::lseek(from_, 0, SEEK_END);
        if (actualEnd == -1) return lastError();
        end_ = std::min(end_, actualEnd);
        return {};
    }

    /// Called after each piece, which ends at `end`: starts sending it to the disk and asks whether to go on.
    [[nodiscard]] std::error_code pieceIsDone(off_t end) {
        writtenEnd_ = end;
        if (end - handedToDisk_ >= writtenAtATime) {
            // This only starts the writing; errors show when the file is flushed.
            ::sync_file_range(to_, handedToDisk_, end - handedToDisk_, SYNC_FILE_RANGE_WRITE);
            handedToDisk_ = end;
        }
        return task_.goOn();
    }

    [[nodiscard]] std::error_code copySegment(off_t begin, off_t stop) {
        while (begin < stop && copiesInKernel_) {
            off_t fromOffset = begin, toOffset = begin;
            const auto size = std::min(largestKernelCopy, static_cast<std::size_t>(stop - begin));
            const ssize_t copied =
                uninterrupted([&] { return ::copy_file_range(from_, &fromOffset, to_, &toOffset, size, 0); });
            if (copied > 0) {
                begin += copied;
                if (const std::error_code error = pieceIsDone(begin)) return error;
                continue;
            }
            // Nothing copied may mean the end of the file, or a file system that does not really do it.
            if (copied < 0 && !meansOtherwise(lastError())) return lastError();
            copiesInKernel_ = false;
        }
        return copyThroughBuffer(begin, stop);
    }

    [[nodiscard]] std::error_code copyThroughBuffer(off_t begin, off_t stop) {
        if (begin < stop) buffer_.resize(bufferSize);
        while (begin < stop) {
            const auto wanted = static_cast<std::size_t>(std::min<off_t>(bufferSize, stop - begin));
            const ssize_t count =
                uninterrupted([&] { return ::pread(from_, buffer_.data(), wanted, begin); });
            if (count < 0) return lastError();
            if (count == 0) {
                end_ = begin;
                return {};
            }
            if (const std::error_code error = write(static_cast<std::size_t>(count), begin)) return error;
            begin += count;
            if (const std::error_code error = pieceIsDone(begin)) return error;
        }
        return {};
    }

    [[nodiscard]] std::error_code write(std::size_t size, off_t offset) {
        for (std::size_t done = 0; done < size;) {
            const ssize_t count = uninterrupted([&] {
                return ::pwrite(to_, buffer_.data() + done, size - done, offset + static_cast<off_t>(done));
            });
            if (count < 0) return lastError();
            done += static_cast<std::size_t>(count);
        }
        return {};
    }

    const CopyTask& task_;
    int from_;
    int to_;
    off_t end_ = 0;           // where the copy ends
    off_t writtenEnd_ = 0;    // up to where the copy has content
    off_t handedToDisk_ = 0;  // up to where that was sent to the disk
    bool copiesInKernel_ = true;
    std::vector<char> buffer_;
};

}  // namespace

std::error_code copyContent(const CopyTask& task, int from, int to, const struct stat& status) {
    return ContentCopy(task, from, to).run(status);
}

}  // namespace vantrel
