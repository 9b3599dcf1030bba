#pragma once

#include <cstdint>

namespace vantrel {

/// How far a file system can be relied on.
/// native:  this machine's own. Keeps owners and permission bits, shows every lock, and syncfs(2) reaches it.
/// foreign: this machine's own as well, in a format that keeps no owners (FAT and its like).
/// unknown: a server or a process answers for it: others may work in it unseen, syncfs(2) may end before it.
enum class VolumeKind : std::uint8_t { native, foreign, unknown };

/// The kind of the file system that an open file or folder lies on; `unknown` also where it cannot be told.
/// Any thread.
VolumeKind volumeKindOf(int descriptor);

}  // namespace vantrel
