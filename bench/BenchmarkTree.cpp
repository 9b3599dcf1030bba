#include "BenchmarkTree.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "base/FileDescriptor.h"
#include "base/Precondition.h"

namespace vantrel::bench {

namespace {

void must(bool holds) {
    precondition(holds, "the benchmark's tree could not be made");
}

void makeFile(int folder, const std::string& name) {
    must(static_cast<bool>(
        FileDescriptor(::openat(folder, name.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644))));
}

FileDescriptor makeFolder(int parent, const std::string& name) {
    must(::mkdirat(parent, name.c_str(), 0755) == 0);
    FileDescriptor folder(::openat(parent, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    must(static_cast<bool>(folder));
    return folder;
}

}  // namespace

BenchmarkTree::BenchmarkTree(Shape shape)
    : shape_(shape), root_(std::filesystem::temp_directory_path() / "vantrel-bench-XXXXXX") {
    must(::mkdtemp(root_.data()) != nullptr);
    FileDescriptor root(::open(root_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    for (int number = 0; number < shape.folders; ++number) {
        const auto folder = makeFolder(root.number(), "folder" + std::to_string(number));
        for (int file = 0; file < shape.filesPerFolder; ++file)
            makeFile(folder.number(), "file" + std::to_string(file));
    }
    for (int level = 0; level < shape.depth; ++level) {
        root = makeFolder(root.number(), "d");
        makeFile(root.number(), "file");
    }
}

BenchmarkTree::~BenchmarkTree() {
    std::error_code ignored;
    std::filesystem::remove_all(root_, ignored);
}

std::string BenchmarkTree::folder(int number) const {
    return root_ + "/folder" + std::to_string(number);
}

}  // namespace vantrel::bench
