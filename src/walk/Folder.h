#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "base/FileDescriptor.h"
#include "base/FileIdentity.h"
#include "walk/FolderHandles.h"
#include "walk/FolderTally.h"

namespace vantrel::walking {

class RunningWalk;

/// How many descriptors folders may keep open for their unopened sub-folders. Any thread.
class DescriptorBudget {
    struct GiveBack {
        void operator()(DescriptorBudget* budget) const {
            budget->kept_.fetch_sub(1, std::memory_order_relaxed);
        }
    };

public:
    /// One descriptor that is kept open.
    using Share = std::unique_ptr<DescriptorBudget, GiveBack>;

    explicit DescriptorBudget(int limit) : limit_(limit) {}
    bool isUsedUp() const { return kept_.load(std::memory_order_relaxed) >= limit_; }
    Share keep() {
        kept_.fetch_add(1, std::memory_order_relaxed);
        return Share(this);
    }

private:
    const int limit_;
    // Relaxed throughout: a number to go by, a little early or late; no other memory depends on it.
    std::atomic<int> kept_{0};
};

/// A folder that is waiting, being read, or has sub-folders that are not finished.
///
/// Lifetime: whoever works on the folder has a reference, and so has each unfinished sub-folder; so the walk
/// is over when the last reference to its root goes. No lock and no counter is shared by all folders of a
/// walk.
///
/// Descriptor: stays open while somebody uses it (reads, measures, opens a sub-folder) or a sub-folder waits
/// to be opened, then is closed by whoever was the last. When descriptors are scarce it is given up earlier;
/// who needs it then opens the folder anew by its path below the nearest open ancestor, and compares
/// `identity()`.
///
/// Threads: those with a reference, for what says nothing else.
class Folder {
public:
    /// The root of `walk`, which ends with it.
    static FolderReference makeRoot(std::unique_ptr<RunningWalk> walk);

    /// A folder that was found in another. Nobody else is to see it until it is adopted there.
    /// `tally` where the walk remembers what it finds.
    static FolderReference make(RunningWalk& walk, std::string_view name,
                                std::unique_ptr<FolderTally> tally = nullptr);

    /// Makes `children` sub-folders of this one, which they keep open until they are opened themselves.
    void adopt(const std::vector<FolderReference>& children);

    RunningWalk& walk() const { return walk_; }
    bool isRoot() const { return *name() == '\0'; }
    Folder* parent() const { return parent_.folder_.get(); }
    const char* name() const { return reinterpret_cast<const char*>(this + 1); }

    /// Once, by whoever visits the folder first.
    FolderUse opened(FileDescriptor descriptor);

    /// A use if the descriptor is open.
    FolderUse tryUse();

    /// Nothing where the walk does not remember what it finds.
    FolderTally* tally() const { return tally_.get(); }

    /// Before anything is found in it.
    void dropTally() { tally_.reset(); }

    /// Of a folder whose descriptor was given up.
    const FileIdentity& identity() const { return identity_; }

private:
    friend class FolderReference;
    friend class FolderUse;
    friend class FolderWait;

    Folder(RunningWalk& walk, std::unique_ptr<FolderTally> tally) : walk_(walk), tally_(std::move(tally)) {}
    ~Folder() = default;
    static void release(Folder* folder);
    static Folder* end(Folder* folder);
    void subtract(std::uint64_t amount);
    bool giveUp();
    void close();

    // state_: uses in the lower half, waiting sub-folders in the upper half below the mark of giving up.
    static constexpr std::uint64_t oneUse = 1;
    static constexpr std::uint64_t oneWait = std::uint64_t{1} << 32;
    static constexpr std::uint64_t usesMask = oneWait - 1;
    static constexpr std::uint64_t givenUp = std::uint64_t{1} << 63;

    RunningWalk& walk_;
    FolderReference parent_;  // none of a root
    FolderWait wait_;         // at the parent, until opened
    std::atomic<std::uint64_t> state_{0};
    std::atomic<std::uint32_t> references_{1};
    FileDescriptor descriptor_;
    DescriptorBudget::Share share_;
    FileIdentity identity_;
    std::unique_ptr<FolderTally> tally_;
    // The name and a zero byte follow. Only a root has an empty one.
};

inline int FolderUse::descriptor() const {
    return folder_->descriptor_.number();
}

inline void FolderUse::GiveBack::operator()(Folder* folder) const {
    folder->subtract(Folder::oneUse);
}

inline void FolderWait::GiveBack::operator()(Folder* folder) const {
    folder->subtract(Folder::oneWait);
}

}  // namespace vantrel::walking
