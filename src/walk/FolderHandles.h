#pragma once

#include <memory>

namespace vantrel::walking {

class DescriptorBudget;
class Folder;

/// Keeps a folder and all folders above it from ending. When the last reference to a root goes, its walk is
/// over: the observer hears of it on the thread that gave the reference back, which therefore holds no lock.
/// Any thread; one thread at a time for each reference.
class FolderReference {
public:
    FolderReference() = default;
    explicit operator bool() const { return folder_ != nullptr; }
    Folder& operator*() const { return *folder_; }
    Folder* operator->() const { return folder_.get(); }

    /// One more.
    FolderReference again() const;

private:
    friend class Folder;
    struct GiveBack {
        void operator()(Folder* folder) const;
    };
    explicit FolderReference(Folder* folder) : folder_(folder) {}

    std::unique_ptr<Folder, GiveBack> folder_;
};

/// Keeps a folder's descriptor open. Given back before the reference, to the folder or to one below it, that
/// its holder has as well. Threads as for references.
class FolderUse {
public:
    FolderUse() = default;
    explicit operator bool() const { return folder_ != nullptr; }
    int descriptor() const;

    /// One more.
    FolderUse again() const;

    /// Counts the descriptor in `budget` until it is closed. Only while reading the folder.
    void keepWithin(DescriptorBudget& budget) const;

    /// Closes the descriptor although sub-folders wait for it, which ends this use; unless there are others.
    /// One thread at a time in the whole pool.
    void giveUp();

private:
    friend class Folder;
    struct GiveBack {
        void operator()(Folder* folder) const;
    };
    explicit FolderUse(Folder* folder) : folder_(folder) {}

    std::unique_ptr<Folder, GiveBack> folder_;
};

/// Keeps the descriptor of the folder above open for a sub-folder that is still to be opened, unless it is
/// given up. Held by the sub-folder.
class FolderWait {
    friend class Folder;
    struct GiveBack {
        void operator()(Folder* folder) const;
    };
    explicit FolderWait(Folder* folder = nullptr) : folder_(folder) {}

    std::unique_ptr<Folder, GiveBack> folder_;
};

}  // namespace vantrel::walking
