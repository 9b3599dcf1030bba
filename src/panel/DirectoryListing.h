#pragma once

#include <cstdint>
#include <string>

#include "panel/ItemOrder.h"

namespace vantrel {

class FileManager;
class StandardOutput;

enum class HiddenFiles : std::uint8_t { leaveOut, show };

/// Reads a folder into rows in the order of the file system, ".." first except at "/". Folders are not yet
/// measured. What cannot be looked into has size 0 and the present date; a link to nowhere is left out. A
/// folder that cannot be read writes one line and has no other row than "..". Main thread only; returns when
/// the file system has answered.
ItemList listDirectory(FileManager& files, StandardOutput& output, const std::string& path,
                       HiddenFiles hidden);

}  // namespace vantrel
