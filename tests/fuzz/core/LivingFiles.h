#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/Input.h"
#include "platform/FileManager.h"

namespace vantrel::fuzz {

/// A file system in memory in which operations really happen, other programs change things at any time, and
/// calls fail. Like a real one it never replaces anything.
class LivingFiles final : public FileManager {
public:
    LivingFiles();

    /// What another program might do: something comes, goes, grows, or becomes of another kind.
    void change(Input& input);

    /// One of the next calls fails for a reason chosen by `input`.
    void planFailure(Input& input);

    /// How often the tree was changed, or would have been, through this interface.
    int operations() const { return operations_; }

    Result<std::vector<DirectoryEntry>> contentsOfDirectory(const std::string& path,
                                                            const NameFilter& wanted) override;
    PathTarget targetOf(const std::string& path) override;
    bool isReadable(const std::string& path) override;
    std::optional<VolumeCapacity> volumeCapacity(const std::string& path) override;
    std::error_code copyItem(const std::string& from, const std::string& to) override;
    std::error_code moveItem(const std::string& from, const std::string& to) override;
    std::error_code createDirectory(const std::string& path) override;
    std::error_code trashItem(const std::string& path) override;
    Result<std::string> readPrefix(const std::string& path, std::size_t limit) override;

private:
    struct Node {
        std::string name;
        DirectoryEntry entry;  ///< what a listing says of it
        std::string content;
        std::vector<std::unique_ptr<Node>> children;  ///< in the order of listing
    };
    using Place = std::vector<std::unique_ptr<Node>>::iterator;

    static std::unique_ptr<Node> madeNode(std::string name, PathTarget target);
    static std::unique_ptr<Node> copyOf(const Node& node, const std::string& name);
    static Place childNamed(Node& folder, std::string_view name);
    static std::size_t weightOf(const Node& node);

    Node* find(const std::string& path);
    Node* folderOf(const std::string& path) { return find(parentOf(path)); }
    static std::string parentOf(const std::string& path);
    std::error_code failure();
    Node& someFolder(Input& input);
    void addSomething(Input& input, Node& folder);
    std::error_code insert(std::unique_ptr<Node> node, const std::string& path);

    Node root_;
    int operations_ = 0;
    int callsUntilFailure_ = -1;
    std::errc reason_{};
};

}  // namespace vantrel::fuzz
