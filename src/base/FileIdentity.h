#pragma once

#include <compare>
#include <cstdint>
#include <optional>

namespace vantrel {

/// Which file or folder a descriptor stands for, whatever its path is by now. Any thread.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    auto operator<=>(const FileIdentity&) const = default;  // NOLINT(modernize-use-nullptr): no pointer here
};

/// Nothing when the system does not tell, with the reason in errno.
std::optional<FileIdentity> identify(int descriptor);

}  // namespace vantrel
