#include "fuzz/core/LivingFiles.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <utility>

#include "base/Paths.h"

namespace vantrel::fuzz {

namespace {

constexpr std::size_t mostNodes = 150;  // so that one run stays short
constexpr std::size_t longestName = 255;

bool canBeAName(const std::string& name) {
    return !name.empty() && name != "." && name != ".." && name.size() <= longestName &&
           name.find_first_of(std::string_view("/\0", 2)) == std::string::npos;
}

}  // namespace

LivingFiles::LivingFiles() {
    root_.entry.target = PathTarget::directory;
    const auto add = [](Node& folder, const char* name, PathTarget target) -> Node& {
        folder.children.push_back(madeNode(name, target));
        return *folder.children.back();
    };
    Node& start = add(root_, "start", PathTarget::directory);
    for (const char* name : {"alpha", "Beta", "10", "9", ".hidden"}) add(start, name, PathTarget::directory);
    for (const char* name : {"a.txt", "b.TXT", ".rc", "c"}) add(start, name, PathTarget::file);
    Node& home = add(add(root_, "Users", PathTarget::directory), "ann", PathTarget::directory);
    for (const char* name : {"x", "y", "z"}) add(home, name, PathTarget::directory);
    home.children.back()->content = "text";
    add(root_, "file", PathTarget::file);
}

std::unique_ptr<LivingFiles::Node> LivingFiles::madeNode(std::string name, PathTarget target) {
    auto node = std::make_unique<Node>();
    node->name = name;
    node->entry = {std::move(name), target, FileAttributes{.size = 10, .posixPermissions = 0755}};
    return node;
}

std::unique_ptr<LivingFiles::Node> LivingFiles::copyOf(const Node& node, const std::string& name) {
    auto copy = madeNode(name, node.entry.target);
    copy->entry.attributes = node.entry.attributes;
    copy->content = node.content;
    for (const auto& child : node.children) copy->children.push_back(copyOf(*child, child->name));
    return copy;
}

LivingFiles::Place LivingFiles::childNamed(Node& folder, std::string_view name) {
    return std::ranges::find_if(folder.children, [&](const auto& child) { return child->name == name; });
}

std::size_t LivingFiles::weightOf(const Node& node) {
    std::size_t weight = 1;
    for (const auto& child : node.children) weight += weightOf(*child);
    return weight;
}

std::string LivingFiles::parentOf(const std::string& path) {
    return paths::deletingLastComponent(path);
}

LivingFiles::Node* LivingFiles::find(const std::string& path) {
    if (!path.starts_with('/')) return nullptr;
    Node* node = &root_;
    for (std::string_view rest = path; !rest.empty();) {
        const std::string_view name = rest.substr(0, rest.find('/'));
        rest.remove_prefix(std::min(rest.size(), name.size() + 1));
        if (name.empty() || name == ".") continue;
        const Place child = childNamed(*node, name);
        if (child == node->children.end()) return nullptr;
        node = child->get();
    }
    return node;
}

std::error_code LivingFiles::failure() {
    if (callsUntilFailure_ < 0 || callsUntilFailure_-- > 0) return {};
    return std::make_error_code(reason_);
}

void LivingFiles::planFailure(Input& input) {
    static constexpr std::array reasons{std::errc::permission_denied, std::errc::io_error,
                                        std::errc::no_such_file_or_directory, std::errc::no_space_on_device,
                                        std::errc::too_many_files_open};
    callsUntilFailure_ = static_cast<int>(input.below(4));
    reason_ = input.oneOf(reasons);
}

LivingFiles::Node& LivingFiles::someFolder(Input& input) {
    Node* folder = &root_;
    for (std::size_t steps = input.below(5); steps > 0 && !folder->children.empty(); --steps) {
        Node& next = *folder->children[input.below(folder->children.size())];
        if (next.entry.target == PathTarget::directory) folder = &next;
    }
    return *folder;
}

void LivingFiles::addSomething(Input& input, Node& folder) {
    static constexpr std::array targets{PathTarget::file, PathTarget::directory, PathTarget::missing};
    auto node = madeNode(input.name(3), input.oneOf(targets));
    if (childNamed(folder, node->name) != folder.children.end() || weightOf(root_) >= mostNodes) return;
    if (input.flag()) node->entry.attributes.reset();
    if (input.flag()) node->content = input.text(8);
    folder.children.push_back(std::move(node));
}

void LivingFiles::change(Input& input) {
    Node& folder = someFolder(input);
    const std::size_t action = input.below(6);
    if (action <= 1 || folder.children.empty()) {
        addSomething(input, folder);
        return;
    }
    const auto place =
        folder.children.begin() + static_cast<std::ptrdiff_t>(input.below(folder.children.size()));
    Node& node = **place;
    if (action == 2) {
        folder.children.erase(place);
    } else if (action == 3) {
        std::rotate(folder.children.begin(), place, folder.children.end());
    } else if (action == 4) {
        node.children.clear();
        node.entry.target =
            node.entry.target == PathTarget::directory ? PathTarget::file : PathTarget::directory;
    } else if (node.entry.attributes) {
        node.entry.attributes->size = input.size();
        node.entry.attributes->link = input.flag() ? LinkKind::symbolicLink : LinkKind::notALink;
        node.entry.attributes->modificationDate = FileTime(std::chrono::nanoseconds(input.size()));
        node.entry.attributes->posixPermissions = static_cast<std::uint32_t>(input.below(01000));
    }
}

Result<std::vector<DirectoryEntry>> LivingFiles::contentsOfDirectory(const std::string& path,
                                                                     const NameFilter& wanted) {
    if (const auto error = failure()) return error;
    const Node* const folder = find(path);
    if (folder == nullptr) return std::make_error_code(std::errc::no_such_file_or_directory);
    if (folder->entry.target != PathTarget::directory)
        return std::make_error_code(std::errc::not_a_directory);
    std::vector<DirectoryEntry> entries;
    for (const auto& child : folder->children) {
        if (wanted(child->name)) entries.push_back(child->entry);
    }
    return entries;
}

PathTarget LivingFiles::targetOf(const std::string& path) {
    const Node* const node = find(path);
    return node == nullptr ? PathTarget::missing : node->entry.target;
}

bool LivingFiles::isReadable(const std::string& path) {
    return !failure() && find(path) != nullptr;
}

std::optional<VolumeCapacity> LivingFiles::volumeCapacity(const std::string& path) {
    if (find(path) == nullptr) return std::nullopt;
    return VolumeCapacity{INT64_MAX, INT64_MAX};
}

std::error_code LivingFiles::insert(std::unique_ptr<Node> node, const std::string& path) {
    if (!canBeAName(node->name)) return std::make_error_code(std::errc::invalid_argument);
    Node* const folder = folderOf(path);
    if (folder == nullptr) return std::make_error_code(std::errc::no_such_file_or_directory);
    if (folder->entry.target != PathTarget::directory)
        return std::make_error_code(std::errc::not_a_directory);
    folder->children.push_back(std::move(node));
    return {};
}

std::error_code LivingFiles::copyItem(const std::string& from, const std::string& to) {
    ++operations_;
    if (const auto error = failure()) return error;
    const Node* const source = find(from);
    if (source == nullptr) return std::make_error_code(std::errc::no_such_file_or_directory);
    if (find(to) != nullptr) return std::make_error_code(std::errc::file_exists);
    if (weightOf(root_) + weightOf(*source) > mostNodes)
        return std::make_error_code(std::errc::no_space_on_device);
    return insert(copyOf(*source, paths::lastComponent(to)), to);
}

std::error_code LivingFiles::moveItem(const std::string& from, const std::string& to) {
    ++operations_;
    if (const auto error = failure()) return error;
    Node* const source = find(from);
    if (source == nullptr || source == &root_)
        return std::make_error_code(std::errc::no_such_file_or_directory);
    if (find(to) != nullptr) return std::make_error_code(std::errc::file_exists);
    if ((to + "/").starts_with(from + "/")) return std::make_error_code(std::errc::invalid_argument);
    if (const auto error = insert(copyOf(*source, paths::lastComponent(to)), to)) return error;
    Node& folder = *folderOf(from);
    folder.children.erase(childNamed(folder, paths::lastComponent(from)));
    return {};
}

std::error_code LivingFiles::createDirectory(const std::string& path) {
    ++operations_;
    if (const auto error = failure()) return error;
    if (const Node* const there = find(path)) {
        const bool isFolder = there->entry.target == PathTarget::directory;
        return isFolder ? std::error_code() : std::make_error_code(std::errc::file_exists);
    }
    const std::string parent = parentOf(path);
    if (parent == path || weightOf(root_) >= mostNodes)
        return std::make_error_code(std::errc::no_space_on_device);
    if (find(parent) == nullptr) {
        const std::error_code error = createDirectory(parent);
        --operations_;
        if (error) return error;
    }
    return insert(madeNode(paths::lastComponent(path), PathTarget::directory), path);
}

std::error_code LivingFiles::trashItem(const std::string& path) {
    ++operations_;
    if (const auto error = failure()) return error;
    Node* const folder = folderOf(path);
    if (folder == nullptr) return std::make_error_code(std::errc::no_such_file_or_directory);
    const Place place = childNamed(*folder, paths::lastComponent(path));
    if (place == folder->children.end()) return std::make_error_code(std::errc::no_such_file_or_directory);
    folder->children.erase(place);
    return {};
}

Result<std::string> LivingFiles::readPrefix(const std::string& path, std::size_t limit) {
    if (const auto error = failure()) return error;
    const Node* const file = find(path);
    if (file == nullptr) return std::make_error_code(std::errc::no_such_file_or_directory);
    if (file->entry.target != PathTarget::file) return std::make_error_code(std::errc::is_a_directory);
    return file->content.substr(0, limit);
}

}  // namespace vantrel::fuzz
