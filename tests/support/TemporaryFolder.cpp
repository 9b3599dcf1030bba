#include "support/TemporaryFolder.h"

#include <dirent.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <filesystem>
#include <vector>

#include "base/FileDescriptor.h"
#include "base/PathLocation.h"
#include "base/Precondition.h"

namespace vantrel::test {

namespace {

void must(bool holds) {
    precondition(holds, "the test's temporary folder could not be prepared");
}

/// Removes what is no folder and answers the names of the folders that remain.
std::vector<std::string> removeFilesIn(int folder) {
    ::fchmod(folder, 0700);
    std::vector<std::string> folders;
    DIR* const stream = ::fdopendir(::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (stream == nullptr) return folders;
    while (const dirent* const entry = ::readdir(stream)) {
        const std::string name = entry->d_name;
        if (name == "." || name == "..") continue;
        ::fchmodat(folder, name.c_str(), 0700, AT_SYMLINK_NOFOLLOW);
        if (::unlinkat(folder, name.c_str(), 0) != 0) folders.push_back(name);
    }
    ::closedir(stream);
    return folders;
}

/// Goes down by descriptor and up by "..", so that no tree is too deep.
void removeContents(FileDescriptor folder) {
    std::vector<std::string> wayDown;
    for (;;) {
        const std::vector<std::string> folders = removeFilesIn(folder.number());
        if (!folders.empty()) {
            ::fchmodat(folder.number(), folders.front().c_str(), 0700, 0);
            FileDescriptor next(::openat(folder.number(), folders.front().c_str(),
                                         O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
            if (!next) return;
            wayDown.push_back(folders.front());
            folder = std::move(next);
            continue;
        }
        if (wayDown.empty()) return;
        folder = FileDescriptor(::openat(folder.number(), "..", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (!folder || ::unlinkat(folder.number(), wayDown.back().c_str(), AT_REMOVEDIR) != 0) return;
        wayDown.pop_back();
    }
}

}  // namespace

TemporaryFolder::TemporaryFolder() : TemporaryFolder(std::filesystem::temp_directory_path().string()) {}

TemporaryFolder::TemporaryFolder(const std::string& parent) : path_(parent + "/vantrel-test-XXXXXX") {
    must(::mkdtemp(path_.data()) != nullptr);
}

TemporaryFolder::~TemporaryFolder() {
    ::chmod(path_.c_str(), 0700);
    removeContents(FileDescriptor(::open(path_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)));
    ::rmdir(path_.c_str());
}

std::string TemporaryFolder::makeFile(std::string_view name, std::string_view content) const {
    const FileDescriptor file(::open(path(name).c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644));
    must(file &&
         ::write(file.number(), content.data(), content.size()) == static_cast<ssize_t>(content.size()));
    return path(name);
}

std::string TemporaryFolder::makeFolder(std::string_view name) const {
    must(::mkdir(path(name).c_str(), 0755) == 0);
    return path(name);
}

std::string TemporaryFolder::makeLink(std::string_view name, const std::string& target) const {
    must(::symlink(target.c_str(), path(name).c_str()) == 0);
    return path(name);
}

std::string TemporaryFolder::makeFifo(std::string_view name) const {
    must(::mkfifo(path(name).c_str(), 0644) == 0);
    return path(name);
}

std::string TemporaryFolder::makeSocket(std::string_view name) const {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    must(path(name).size() < sizeof address.sun_path);
    path(name).copy(address.sun_path, sizeof address.sun_path - 1);
    const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    must(::bind(socket.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0);
    return path(name);
}

std::string TemporaryFolder::makeDeepFolder(std::size_t depth, std::string_view name) const {
    const std::string component(name);
    std::string innermost = path_;
    FileDescriptor folder(::open(path_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    for (; depth > 0; --depth) {
        must(::mkdirat(folder.number(), component.c_str(), 0755) == 0);
        folder =
            FileDescriptor(::openat(folder.number(), component.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        must(static_cast<bool>(folder));
        innermost += '/' + component;
    }
    return innermost;
}

std::string quickPlace() {
    return ::access("/dev/shm", W_OK) == 0 ? "/dev/shm" : std::filesystem::temp_directory_path().string();
}

std::string contentOf(const std::string& path) {
    const Result<FileDescriptor> file = openPath(path, O_RDONLY | O_NONBLOCK);
    EXPECT_TRUE(file) << path << ": " << file.error().message();
    if (!file) return "";
    std::string content;
    std::array<char, 65536> buffer;
    ssize_t count = 0;
    while ((count = ::read(file.value().number(), buffer.data(), buffer.size())) > 0) {
        content.append(buffer.data(), static_cast<std::size_t>(count));
    }
    EXPECT_EQ(count, 0) << path;
    return content;
}

std::size_t openDescriptors() {
    std::size_t count = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) ++count;
    return count;
}

}  // namespace vantrel::test
