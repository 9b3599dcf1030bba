#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <system_error>

#include "base/FileDescriptor.h"
#include "base/FileIdentity.h"
#include "base/FileTime.h"
#include "base/Result.h"

namespace vantrel::walking {

enum class EntryKind : std::uint8_t {
    folder,
    link,
    other,    ///< a file, FIFO, socket or device: what is counted
    unknown,  ///< the directory stream does not say; only `measure` knows
};

/// A name of the batch last read; the text lives until the next `read`.
struct Entry {
    const char* name = nullptr;
    EntryKind kind = EntryKind::unknown;
    std::uint64_t inode = 0;  ///< of what the entry stands for, see FolderTrust
};

struct Measure {
    EntryKind kind = EntryKind::unknown;  ///< never unknown after a successful `measure`
    std::int64_t bytes = 0;               ///< allocated on disk
};

enum class EndMark : std::uint8_t { unknown, trusted, none };

/// A folder seen from outside.
struct FolderLook {
    FileIdentity identity;
    CalendarTime changed;       ///< its entries or attributes, by the clock of its file system
    bool isMountPoint = false;  ///< also where that cannot be told
};

/// How far a file system's word on folders can be relied on by who remembers what they hold.
enum class FolderTrust : std::uint8_t {
    none,       ///< change times are another machine's, or nobody knows whose
    looks,      ///< change times and identities, of folders that are looked at
    andInodes,  ///< the inodes that a directory's entries name as well; one device throughout
};

/// What a walk has learned about its file system and the kernel. Shared by the threads of the walk. All is
/// stored and loaded relaxed: whoever sees an old value makes a call that the system answers as it did
/// before.
struct Volume {
    std::atomic<bool> hasOpenat2{true};  ///< false once the kernel or a sandbox has shown that it has none
    std::atomic<EndMark> endMark{EndMark::unknown};  ///< whether a batch of names tells that it is the last
    std::atomic<bool> sparesAccessTimes{
        true};  ///< false once the system has refused to leave a folder's alone
};

/// What came of reading on in a folder: names, its end, or an error, after which there are no more names.
enum class Batch : std::uint8_t { names, end, failed };

/// What a reader keeps beside the descriptor while a folder is read in several batches; nothing on Linux.
class DirectoryStream {
public:
    virtual ~DirectoryStream() = default;
};

/// Port: the system calls of a walk. Each thread has a reader of its own, which holds one batch of names.
/// Descriptors and streams may pass from one thread's reader to another's. What cannot be opened or measured
/// is an error value; EMFILE and ENFILE mean that the same call may succeed later.
class DirectoryReader {
public:
    virtual ~DirectoryReader() = default;

    /// The folder at `path` (any length), through links and mount points: the root of a walk.
    virtual Result<FileDescriptor> openRoot(const std::string& path, Volume& volume) = 0;

    /// The folder `name` in `parent`; never through a link nor into another file system.
    virtual Result<FileDescriptor> openFolder(int parent, const char* name, Volume& volume) = 0;

    /// The folder at `relativePath` (any length, "." too) below `ancestor`, by the same rules. Good for
    /// `openFolder` and `openBelow`, perhaps not for reading.
    virtual Result<FileDescriptor> openBelow(int ancestor, const std::string& relativePath,
                                             Volume& volume) = 0;

    /// To be called once, before the first `read` of a folder; destroyed after the last.
    virtual Result<std::unique_ptr<DirectoryStream>> beginReading(int folder) = 0;

    /// Reads the next batch of names.
    virtual Batch read(int folder, DirectoryStream* stream) = 0;

    /// Whether the batch last read is known to be the folder's last; to be asked once its entries are used
    /// up.
    virtual bool reachedEnd(int folder, Volume& volume) const = 0;

    /// Whether the batch last read was so large that more names are likely to follow.
    virtual bool expectsMore() const = 0;

    /// The descriptor to pass to `measure` for the batch last read from `folder`.
    virtual int measuringFrom(int folder) = 0;

    /// The next entry of the batch, without "." and "..". False when the batch is used up.
    virtual bool next(Entry& entry) = 0;

    /// Back to the first entry of the batch.
    virtual void rewind() = 0;

    /// Looks at an entry without following a link or opening it.
    [[nodiscard]] virtual std::error_code measure(int folder, const char* name, Measure& measure) = 0;

    /// Looks at a folder in another without opening it: not_a_directory for anything else.
    virtual Result<FolderLook> look(int folder, const char* name) = 0;

    /// Looks at an open folder.
    virtual Result<FolderLook> look(int folder) = 0;

    /// What the file system of that folder tells of its folders can be relied on so far.
    virtual FolderTrust trust(int folder) = 0;

    /// Lets go of every folder: the thread turns to another walk or has nothing to do.
    virtual void rest() = 0;
};

}  // namespace vantrel::walking
