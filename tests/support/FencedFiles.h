#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>

#include "posix/files/PosixFileManager.h"

namespace vantrel::test {

/// The real file system below one folder. What leads out of it is neither listed nor changed, by whatever
/// path or link, and fails the test: for tests that press keys at random.
class FencedFiles final : public FileManager {
public:
    explicit FencedFiles(const std::string& folder)
        : fence_(std::filesystem::canonical(folder).string() + "/") {}

    Result<std::vector<DirectoryEntry>> contentsOfDirectory(const std::string& path,
                                                            const NameFilter& wanted) override {
        if (!isWithin(path + "/.")) return refused(path);
        return files_.contentsOfDirectory(path, wanted);
    }
    PathTarget targetOf(const std::string& path) override { return files_.targetOf(path); }
    bool isReadable(const std::string& path) override { return files_.isReadable(path); }
    std::optional<FileIdentity> identityOf(const std::string& path) override {
        return files_.identityOf(path);
    }
    std::vector<FileIdentity> ancestryOf(const std::string& path) override { return files_.ancestryOf(path); }
    std::vector<std::string> trashFoldersFor(const std::string& path) override {
        return files_.trashFoldersFor(path);
    }
    std::optional<VolumeCapacity> volumeCapacity(const std::string& path) override {
        return files_.volumeCapacity(path);
    }
    std::error_code copyItem(const std::string& from, const std::string& to) override {
        return isWithin(from) && isWithin(to) ? files_.copyItem(from, to) : refused(from + " to " + to);
    }
    std::error_code moveItem(const std::string& from, const std::string& to) override {
        return isWithin(from) && isWithin(to) ? files_.moveItem(from, to) : refused(from + " to " + to);
    }
    std::error_code createDirectory(const std::string& path) override {
        return isWithin(path) ? files_.createDirectory(path) : refused(path);
    }
    std::error_code trashItem(const std::string& path) override {
        return isWithin(path) ? files_.trashItem(path) : refused(path);
    }
    Result<std::string> readPrefix(const std::string& path, std::size_t limit) override {
        return files_.readPrefix(path, limit);
    }

private:
    // The item itself need not be there, and where it is a link it counts as standing where the link does.
    bool isWithin(const std::string& path) const {
        const std::filesystem::path item(path);
        std::error_code error;
        const auto folder = std::filesystem::weakly_canonical(item.parent_path(), error);
        const std::string place = (folder / "").lexically_normal().string();
        return !error && item.filename() != ".." && place.starts_with(fence_);
    }

    static std::error_code refused(const std::string& what) {
        ADD_FAILURE() << "outside the test's folder: " << what;
        return std::make_error_code(std::errc::operation_not_permitted);
    }

    const std::string fence_;
    PosixFileManager files_;
};

}  // namespace vantrel::test
