#pragma once

#include <dirent.h>
#include <sys/stat.h>

#include <string>

#include "platform/DirectoryReader.h"

/// What both directory readers share: POSIX.1-2017 system calls, wrapped once. Any thread; folders are
/// borrowed, and failures are those of the calls.
namespace vantrel::walking {

/// The folder `name` in `parent`, opened with `flags` but through no link; EXDEV if something is mounted
/// there. Where the system tells mount points (statx(2) on Linux 5.8), no mount is entered and no automount
/// started. Elsewhere a mount shows by its device number alone.
Result<FileDescriptor> openUnlessMounted(int parent, const char* name, int flags);

/// Kind and allocated size from a stat structure; its length where the number of blocks is unknown.
Measure measureOf(const struct stat& status);

inline bool isDotOrDotDot(const char* name) {
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

/// What a record of a directory (dirent or dirent64) says about its entry.
template <class Record>
EntryKind kindOf([[maybe_unused]] const Record& record) {
#ifdef DT_UNKNOWN
    switch (record.d_type) {
        case DT_UNKNOWN:
            return EntryKind::unknown;
        case DT_DIR:
            return EntryKind::folder;
        case DT_LNK:
            return EntryKind::link;
        default:
            return EntryKind::other;
    }
#else
    return EntryKind::unknown;
#endif
}

/// Opens `path` piece by piece, each relative to the one before: `open(base, piece)` gets pieces of at most
/// `longestPiece` bytes (or one component, if that alone is longer), the first relative to `base`.
template <class Open>
Result<FileDescriptor> openInPieces(int base, const std::string& path, std::size_t longestPiece, Open open) {
    FileDescriptor current;
    std::size_t begin = 0;
    for (;;) {
        std::size_t end = path.size();
        if (end - begin > longestPiece) {
            end = path.rfind('/', begin + longestPiece);
            if (end == std::string::npos || end <= begin) end = path.find('/', begin + 1);
            if (end == std::string::npos) end = path.size();
        }
        auto opened = open(current ? current.number() : base, path.substr(begin, end - begin).c_str());
        if (!opened) return opened.error();
        current = std::move(*opened);
        begin = path.find_first_not_of('/', end);
        if (begin == std::string::npos) return current;
    }
}

}  // namespace vantrel::walking
