#include "fuzz/core/FileChanges.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <utility>

namespace vantrel::fuzz {

namespace {

using test::FakeFileManager;
using Item = FakeFileManager::Item;

constexpr std::size_t mostItems = 150;

DirectoryEntry entryOf(std::string name, PathTarget target) {
    return {std::move(name), target, FileAttributes{.size = 10, .posixPermissions = 0755}};
}

Item& someFolder(FakeFileManager& files, Input& input) {
    Item* folder = &files.root();
    for (std::size_t steps = input.below(5); steps > 0 && !folder->children.empty(); --steps) {
        Item& next = *folder->children[input.below(folder->children.size())];
        if (next.entry.target == PathTarget::directory) folder = &next;
    }
    return *folder;
}

void addSomething(FakeFileManager& files, Item& folder, Input& input) {
    static constexpr std::array targets{PathTarget::file, PathTarget::directory, PathTarget::missing};
    auto item = std::make_unique<Item>();
    const std::string name = input.name(3);
    item->entry = entryOf(name, input.oneOf(targets));
    item->content = "";
    if (FakeFileManager::childNamed(folder, name) != nullptr) return;
    if (FakeFileManager::countOf(files.root()) >= files.mostItems) return;
    if (input.flag()) item->entry.attributes.reset();
    if (input.flag()) item->content = input.text(8);
    folder.children.push_back(std::move(item));
}

void changeAttributes(FileAttributes& attributes, Input& input) {
    attributes.size = input.size();
    attributes.link = input.flag() ? LinkKind::symbolicLink : LinkKind::notALink;
    attributes.modificationDate = FileTime(std::chrono::nanoseconds(input.size()));
    attributes.posixPermissions = static_cast<std::uint32_t>(input.below(01000));
}

}  // namespace

void fill(FakeFileManager& files) {
    const auto add = [&](const char* folder, const char* name, PathTarget target, const char* content = "") {
        files.add(folder, entryOf(name, target)).content = content;
    };
    for (const char* name : {"alpha", "Beta", "10", "9", ".hidden"})
        add("/start", name, PathTarget::directory);
    for (const char* name : {"a.txt", "b.TXT", ".rc", "c"}) add("/start", name, PathTarget::file);
    for (const char* name : {"x", "y"}) add("/Users/ann", name, PathTarget::directory);
    add("/Users/ann", "z", PathTarget::directory, "text");
    add("/", "file", PathTarget::file);
    files.capacity = VolumeCapacity{INT64_MAX, INT64_MAX};
    files.mostItems = mostItems;
}

void change(FakeFileManager& files, Input& input) {
    Item& folder = someFolder(files, input);
    const std::size_t action = input.below(6);
    if (action <= 1 || folder.children.empty()) {
        addSomething(files, folder, input);
        return;
    }
    const auto place =
        folder.children.begin() + static_cast<std::ptrdiff_t>(input.below(folder.children.size()));
    Item& item = **place;
    if (action == 2) {
        folder.children.erase(place);
    } else if (action == 3) {
        std::rotate(folder.children.begin(), place, folder.children.end());
    } else if (action == 4) {
        item.children.clear();
        item.entry.target =
            item.entry.target == PathTarget::directory ? PathTarget::file : PathTarget::directory;
    } else if (item.entry.attributes) {
        changeAttributes(*item.entry.attributes, input);
    }
}

void planFault(FakeFileManager& files, Input& input) {
    static constexpr std::array reasons{std::errc::permission_denied, std::errc::io_error,
                                        std::errc::no_such_file_or_directory, std::errc::no_space_on_device,
                                        std::errc::too_many_files_open};
    const auto callsUntilThen = static_cast<int>(input.below(4));
    files.fault = [left = callsUntilThen, reason = input.oneOf(reasons)]() mutable {
        return left-- == 0 ? std::make_error_code(reason) : std::error_code();
    };
}

}  // namespace vantrel::fuzz
