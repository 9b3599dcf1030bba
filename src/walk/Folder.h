#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string_view>

#include "base/FileIdentity.h"
#include "platform/DirectoryReader.h"

namespace vantrel::walking {

class RunningWalk;

/// How many descriptors folders may keep open for their unopened sub-folders. Any thread.
class DescriptorBudget {
public:
    explicit DescriptorBudget(int limit) : limit_(limit) {}
    bool isUsedUp() const { return kept_.load(std::memory_order_relaxed) >= limit_; }
    void keep() { kept_.fetch_add(1, std::memory_order_relaxed); }
    void drop() { kept_.fetch_sub(1, std::memory_order_relaxed); }

private:
    const int limit_;
    std::atomic<int> kept_{0};
};

/// A folder that is waiting, being read, or has sub-folders that are not finished.
///
/// Lifetime: counted. Whoever works on the folder has a reference, each unfinished sub-folder has one, and a
/// folder has one to its parent; so the walk is over when its root is released. No lock and no counter is
/// shared by all folders of a walk.
///
/// Descriptor: stays open while somebody uses it (reads, measures, opens a sub-folder) or a sub-folder waits
/// to be opened, then is closed by whoever was the last. When descriptors are scarce it is given up earlier;
/// who needs it then opens the folder anew by its path below the nearest open ancestor, and compares
/// `identity()`.
class Folder {
public:
    /// With one reference, for whoever will visit it. `parent` (nothing for a root) is told later, by
    /// `expect`.
    static Folder* make(RunningWalk& walk, Folder* parent, std::string_view name);

    /// Ends the life of a folder that nobody was told of.
    static void discard(Folder* folder);

    /// Gives back one reference; frees the folder, and its ancestors, when it was the last. Returns the walk
    /// when that freed its root, otherwise null.
    static RunningWalk* release(Folder* folder);

    RunningWalk& walk() const { return walk_; }
    Folder* parent() const { return parent_; }
    const char* name() const { return reinterpret_cast<const char*>(this + 1); }

    /// One more reference, for a caller that has one.
    void retain() { references_.fetch_add(1, std::memory_order_relaxed); }

    /// References and waits of `count` new sub-folders; before any thread can see them.
    void expect(std::uint32_t count);

    /// Set once, by whoever opens the folder, who thereby uses the descriptor.
    void opened(FileDescriptor descriptor, std::unique_ptr<DirectoryStream> stream);
    bool wasOpened() const { return wasOpened_; }

    /// Only for whoever uses the descriptor.
    int descriptor() const { return descriptor_.number(); }
    DirectoryStream* stream() const { return stream_.get(); }
    void endReading() { stream_.reset(); }

    /// Begins a use if the descriptor is open; the caller needs a reference only.
    bool tryUse();
    /// One more use, for a caller that has one.
    void useAgain() { state_.fetch_add(oneUse, std::memory_order_relaxed); }
    void endUse() { subtract(oneUse); }
    void endWait() { subtract(oneWait); }
    void endUseAndWait() { subtract(oneUse + oneWait); }

    /// Counts the descriptor in `budget` until it is closed. Only by the reader, while it uses the
    /// descriptor.
    void keepWithin(DescriptorBudget& budget);

    /// Closes the descriptor although sub-folders wait, and ends the caller's use, unless others use it as
    /// well. Callers take turns.
    bool giveUp();

    /// Of a folder whose descriptor was given up.
    const FileIdentity& identity() const { return identity_; }

private:
    Folder(RunningWalk& walk, Folder* parent) : walk_(walk), parent_(parent) {}
    ~Folder() = default;
    void subtract(std::uint64_t amount);
    void close();

    // state_: uses in the lower half, waiting sub-folders in the upper half below the mark of giving up.
    static constexpr std::uint64_t oneUse = 1;
    static constexpr std::uint64_t oneWait = std::uint64_t{1} << 32;
    static constexpr std::uint64_t usesMask = oneWait - 1;
    static constexpr std::uint64_t givenUp = std::uint64_t{1} << 63;

    RunningWalk& walk_;
    Folder* const parent_;
    std::atomic<std::uint64_t> state_{0};
    std::atomic<std::uint32_t> references_{1};
    bool wasOpened_ = false;
    FileDescriptor descriptor_;
    std::unique_ptr<DirectoryStream> stream_;
    DescriptorBudget* keptWithin_ = nullptr;
    FileIdentity identity_;
    // The name and a zero byte follow.
};

}  // namespace vantrel::walking
