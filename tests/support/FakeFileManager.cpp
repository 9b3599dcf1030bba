#include "support/FakeFileManager.h"

#include <algorithm>
#include <utility>

#include "base/Paths.h"

namespace vantrel::test {

namespace {

using Item = FakeFileManager::Item;

constexpr std::size_t longestName = 255;

std::error_code errorOf(std::errc reason) {
    return std::make_error_code(reason);
}

bool isFolder(const Item& item) {
    return item.entry.target == PathTarget::directory;
}

/// Cuts the first component off a path, with the slash after it.
std::string_view takeComponent(std::string_view& path) {
    const std::string_view name = path.substr(0, path.find('/'));
    path.remove_prefix(std::min(path.size(), name.size() + 1));
    return name;
}

std::unique_ptr<Item> itemFrom(DirectoryEntry entry) {
    auto item = std::make_unique<Item>();
    item->entry = std::move(entry);
    return item;
}

std::unique_ptr<Item> copyOf(const Item& item) {
    auto copy = itemFrom(item.entry);
    copy->content = item.content;
    copy->entry.identity.reset();
    for (const auto& child : item.children) copy->children.push_back(copyOf(*child));
    return copy;
}

bool holds(const Item& folder, const Item& item) {
    return &folder == &item ||
           std::ranges::any_of(folder.children, [&](const auto& child) { return holds(*child, item); });
}

std::unique_ptr<Item> takeOut(Item& folder, const Item& item) {
    for (auto child = folder.children.begin(); child != folder.children.end(); ++child) {
        if (child->get() != &item) {
            if (auto taken = takeOut(**child, item)) return taken;
            continue;
        }
        std::unique_ptr<Item> taken = std::move(*child);
        folder.children.erase(child);
        return taken;
    }
    return nullptr;
}

/// Why no entry can have that name, if none can.
std::error_code refusalOf(std::string_view name) {
    if (name.size() > longestName) return errorOf(std::errc::filename_too_long);
    return name.find('\0') == name.npos ? std::error_code() : errorOf(std::errc::invalid_argument);
}

}  // namespace

DirectoryEntry folderEntry(const std::string& name) {
    return {name, PathTarget::directory, FileAttributes{.size = 4096, .posixPermissions = 0755}};
}

DirectoryEntry fileEntry(const std::string& name, std::int64_t size) {
    return {name, PathTarget::file, FileAttributes{.size = size, .posixPermissions = 0644}};
}

FakeFileManager::FakeFileManager() {
    root_.entry = folderEntry("/");
}

Item* FakeFileManager::childNamed(Item& folder, std::string_view name) {
    const auto child =
        std::ranges::find_if(folder.children, [&](const auto& item) { return item->entry.name == name; });
    return child == folder.children.end() ? nullptr : child->get();
}

std::size_t FakeFileManager::countOf(const Item& item) {
    std::size_t count = 1;
    for (const auto& child : item.children) count += countOf(*child);
    return count;
}

void FakeFileManager::addFolder(const std::string& folder, const std::string& name) {
    add(folder, folderEntry(name));
}

void FakeFileManager::addFile(const std::string& folder, const std::string& name, std::int64_t size) {
    add(folder, fileEntry(name, size));
}

Item& FakeFileManager::add(const std::string& folder, DirectoryEntry entry) {
    Item& parent = folderAt(folder);
    if (Item* const there = childNamed(parent, entry.name)) {
        there->entry = std::move(entry);
        return *there;
    }
    return *parent.children.emplace_back(itemFrom(std::move(entry)));
}

void FakeFileManager::write(const std::string& path, std::string content) {
    Item& file = add(paths::deletingLastComponent(path),
                     fileEntry(paths::lastComponent(path), static_cast<std::int64_t>(content.size())));
    file.content = std::move(content);
}

void FakeFileManager::makeUnreadable(const std::string& path) {
    const Result<Item*> found = find(path);
    (found ? *found.value() : folderAt(path)).isReadable = false;
}

Item& FakeFileManager::folderAt(const std::string& path) {
    Item* folder = &root_;
    for (std::string_view rest = path; !rest.empty();) {
        const std::string_view name = takeComponent(rest);
        if (name.empty()) continue;
        Item* next = childNamed(*folder, name);
        if (next == nullptr)
            next = folder->children.emplace_back(itemFrom(folderEntry(std::string(name)))).get();
        folder = next;
    }
    return *folder;
}

Result<Item*> FakeFileManager::find(const std::string& path) {
    if (!path.starts_with('/')) return errorOf(std::errc::no_such_file_or_directory);
    std::vector<Item*> trail{&root_};
    std::string_view rest = std::string_view(path).substr(1);
    while (!rest.empty() || (path.ends_with('/') && !isFolder(*trail.back()))) {
        if (!isFolder(*trail.back())) return errorOf(std::errc::not_a_directory);
        const std::string_view name = takeComponent(rest);
        if (name.empty() || name == ".") continue;
        if (const auto error = refusalOf(name)) return error;
        if (name == "..") {
            if (trail.size() > 1) trail.pop_back();
            continue;
        }
        Item* const child = childNamed(*trail.back(), name);
        if (child == nullptr) return errorOf(std::errc::no_such_file_or_directory);
        trail.push_back(child);
    }
    return trail.back();
}

Result<FakeFileManager::Place> FakeFileManager::placeOf(const std::string& path) {
    const Result<Item*> folder = find(paths::deletingLastComponent(path));
    if (!folder) return folder.error();
    if (!isFolder(*folder.value())) return errorOf(std::errc::not_a_directory);
    return Place{folder.value(), paths::lastComponent(path)};
}

std::error_code FakeFileManager::requireFree(const Place& place) {
    const std::string& name = place.name;
    if (name == "." || name == ".." || name == "/" || childNamed(*place.folder, name) != nullptr)
        return errorOf(std::errc::file_exists);
    return refusalOf(name);
}

Result<std::vector<DirectoryEntry>> FakeFileManager::contentsOfDirectory(const std::string& path,
                                                                         const NameFilter& wanted) {
    listedFolders.push_back(path);
    if (const auto error = nextFault()) return error;
    const Result<Item*> folder = find(path);
    if (!folder) return folder.error();
    if (!isFolder(*folder.value())) return errorOf(std::errc::not_a_directory);
    if (!folder.value()->isReadable) return errorOf(std::errc::permission_denied);
    std::vector<DirectoryEntry> entries;
    for (const auto& child : folder.value()->children) {
        if (!wanted(child->entry.name)) continue;
        inspectedNames.push_back(child->entry.name);
        (void)identityOf(*child);
        entries.push_back(child->entry);
    }
    return entries;
}

PathTarget FakeFileManager::targetOf(const std::string& path) {
    if (nextFault()) return PathTarget::missing;
    const Result<Item*> item = find(path);
    return item ? item.value()->entry.target : PathTarget::missing;
}

bool FakeFileManager::isReadable(const std::string& path) {
    if (nextFault()) return false;
    const Result<Item*> item = find(path);
    return item && item.value()->isReadable && item.value()->entry.target != PathTarget::missing;
}

std::optional<FileIdentity> FakeFileManager::identityOf(Item& item) {
    std::optional<FileIdentity>& identity = item.entry.identity;
    if (!identity && tellsIdentities) identity = FileIdentity{.device = 1, .inode = ++identities_};
    return identity;
}

std::optional<FileIdentity> FakeFileManager::identityOf(const std::string& path) {
    const Result<Item*> item = find(path);
    return item ? identityOf(*item.value()) : std::nullopt;
}

std::vector<FileIdentity> FakeFileManager::ancestryOf(const std::string& path) {
    std::vector<FileIdentity> ancestry;
    std::string folder = paths::normalized(path);
    while (find(folder)) {
        if (const auto identity = identityOf(folder)) ancestry.push_back(*identity);
        if (folder == "/") break;
        folder = paths::deletingLastComponent(folder);
    }
    return ancestry;
}

std::optional<VolumeCapacity> FakeFileManager::volumeCapacity(const std::string& path) {
    if (nextFault() || !find(path)) return std::nullopt;
    return capacity;
}

std::error_code FakeFileManager::begin(const std::string& operation) {
    operations.push_back(operation);
    if (onOperation) onOperation();
    return operationError ? operationError : nextFault();
}

std::error_code FakeFileManager::end(const std::string& from, const std::string& to) const {
    if (onChange) onChange(from, to);
    return {};
}

std::error_code FakeFileManager::copyItem(const std::string& from, const std::string& to) {
    if (const auto error = begin("copy " + from + " to " + to)) return error;
    const Result<Place> target = placeOf(to);
    if (!target) return target.error();
    const Result<Item*> source = find(from);
    if (!source) return source.error();
    if (const auto error = requireFree(target.value())) return error;
    if (holds(*source.value(), *target.value().folder)) return errorOf(std::errc::invalid_argument);
    if (countOf(root_) + countOf(*source.value()) > mostItems) return errorOf(std::errc::no_space_on_device);
    target.value().folder->children.push_back(copyOf(*source.value()));
    target.value().folder->children.back()->entry.name = target.value().name;
    return end("", to);
}

std::error_code FakeFileManager::moveItem(const std::string& from, const std::string& to) {
    if (const auto error = begin("move " + from + " to " + to)) return error;
    const Result<Place> target = placeOf(to);
    if (!target) return target.error();
    const Result<Item*> item = find(from);
    if (!item) return item.error();
    if (holds(*item.value(), *target.value().folder)) return errorOf(std::errc::invalid_argument);
    if (const auto error = requireFree(target.value())) return error;
    std::unique_ptr<Item> moved = takeOut(root_, *item.value());
    moved->entry.name = target.value().name;
    target.value().folder->children.push_back(std::move(moved));
    return end(from, to);
}

// A ".." leads up, and is never made.
std::error_code FakeFileManager::createDirectory(const std::string& path) {
    if (const auto error = begin("make " + path)) return error;
    const Result<Item*> there = find(path);
    if (there) return isFolder(*there.value()) ? std::error_code() : errorOf(std::errc::not_a_directory);
    if (!path.starts_with('/') || there.error() != std::errc::no_such_file_or_directory) return there.error();
    for (std::string_view rest = path; !rest.empty();) {
        if (const auto error = refusalOf(takeComponent(rest))) return error;
    }
    if (countOf(root_) >= mostItems) return errorOf(std::errc::no_space_on_device);
    folderAt(paths::normalized(path));
    return end("", path);
}

std::error_code FakeFileManager::trashItem(const std::string& path) {
    if (const auto error = begin("trash " + path)) return error;
    if (!path.starts_with('/')) return errorOf(std::errc::invalid_argument);
    const Result<Item*> item = find(path);
    if (!item) return item.error();
    if (!takeOut(root_, *item.value())) return errorOf(std::errc::invalid_argument);
    return end(path, "");
}

Result<std::string> FakeFileManager::readPrefix(const std::string& path, std::size_t limit) {
    if (const auto error = nextFault()) return error;
    const Result<Item*> found = find(path);
    if (!found) return found.error();
    const Item& file = *found.value();
    if (isFolder(file)) return errorOf(std::errc::is_a_directory);
    if (file.entry.target == PathTarget::missing) return errorOf(std::errc::no_such_file_or_directory);
    if (!file.isReadable) return errorOf(std::errc::permission_denied);
    if (file.content) return file.content->substr(0, limit);
    const auto size = file.entry.attributes ? static_cast<std::size_t>(file.entry.attributes->size) : 0;
    return std::string(std::min(limit, size), '\0');
}

}  // namespace vantrel::test
