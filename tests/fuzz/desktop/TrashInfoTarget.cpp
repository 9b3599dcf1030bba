#include <fcntl.h>
#include <glib.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>

#include "base/FileDescriptor.h"
#include "base/Paths.h"
#include "fuzz/Input.h"
#include "fuzz/Utf8.h"
#include "fuzz/desktop/Targets.h"
#include "posix/files/Trash.h"
#include "posix/files/TrashCan.h"
#include "support/TemporaryFolder.h"

// What the trash writes, read again by the library that other desktops read it with.

namespace vantrel::fuzz {

namespace {

constexpr std::size_t infoSuffixLength = 10;  // ".trashinfo"
constexpr std::size_t longestNumber = 7;      // ".100000"

template <auto release>
struct Release {
    template <class Kind>
    void operator()(Kind* held) const {
        release(held);
    }
};
using KeyFile = std::unique_ptr<GKeyFile, Release<g_key_file_unref>>;
using Characters = std::unique_ptr<char, Release<g_free>>;
using Date = std::unique_ptr<GDateTime, Release<g_date_time_unref>>;
using Zone = std::unique_ptr<GTimeZone, Release<g_time_zone_unref>>;

Characters valueOf(GKeyFile& file, const char* key) {
    Characters value(g_key_file_get_string(&file, "Trash Info", key, nullptr));
    require(value != nullptr, "an info file says where and when");
    return value;
}

/// The path that the info file holds.
std::string readInfo(const std::string& content) {
    const KeyFile file(g_key_file_new());
    require(
        g_key_file_load_from_data(file.get(), content.data(), content.size(), G_KEY_FILE_NONE, nullptr) != 0,
        "an info file is a key file");
    const Zone zone(g_time_zone_new_local());
    const Characters date = valueOf(*file, "DeletionDate");
    require(Date(g_date_time_new_from_iso8601(date.get(), zone.get())) != nullptr, "its date is one");
    const Characters escaped = valueOf(*file, "Path");
    const Characters path(g_uri_unescape_string(escaped.get(), nullptr));
    require(path != nullptr, "its path can be decoded");
    return path.get();
}

void checkName(const std::string& name, int attempt, std::size_t limit) {
    const std::string chosen = trashName(name, attempt, limit);
    require(!chosen.empty() && chosen.size() <= limit, "a name in the trash fits");
    require(chosen.find('/') == std::string::npos && chosen != "." && chosen != "..", "it is a name");
    require(attempt > 1 || name.size() > limit || chosen == name, "the first try is the item's own name");
    // A shortened name may happen to end with the number of the next try.
    if (name.size() + longestNumber <= limit) {
        require(trashName(name, attempt + 1, limit) != chosen, "each try has a name of its own");
    }
    require(!isUtf8(name) || isUtf8(chosen), "no character is cut apart");
}

/// Home and volume are two mounts, as the trash sees it.
class Place {
public:
    Place() : root_(std::filesystem::canonical(folder_.path())) {
        folder_.makeFolder("home");
        folder_.makeFolder("volume");
    }

    void trashAndCheck(const std::string& where, const std::string& name, const std::string& trash,
                       const std::string& topFolder) const {
        const std::string path = paths::appending(paths::appending(root_, where), name);
        const FileDescriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
        if (!file) return;  // a name that this file system does not take
        const std::string can = paths::appending(root_, trash);
        require(!Trash({.dataHome = root_ + "/home", .findMount = mounts()}).put(path), "an item is trashed");
        require(::access(path.c_str(), F_OK) != 0, "it is no longer where it was");
        for (const auto& entry : std::filesystem::directory_iterator(can + "/info")) {
            const std::string info = entry.path().filename();
            const std::string trashed = can + "/files/" + info.substr(0, info.size() - infoSuffixLength);
            require(::access(trashed.c_str(), F_OK) == 0, "each info has its item");
            std::string recorded = topFolder.empty() ? "" : root_ + topFolder + "/";
            recorded += readInfo(test::contentOf(entry.path()));
            require(recorded == path, "the path in the info is the item's");
        }
    }

private:
    Trash::MountFinder mounts() const {
        return [this](int, const std::string& path) -> Result<Mount> {
            if (path.starts_with(root_ + "/volume")) return Mount{2, root_ + "/volume", true};
            return Mount{1, "/", false};
        };
    }

    // In memory where that is possible: a disk takes a hundred times as long.
    test::TemporaryFolder folder_{
        ::access("/dev/shm", W_OK) == 0 ? "/dev/shm" : std::filesystem::temp_directory_path().string()};
    std::string root_;
};

}  // namespace

void tryTrashInfo(std::span<const std::uint8_t> bytes) {
    Input input(bytes);
    const std::string name = input.name(input.below(2) == 0 ? 8 : 100);
    checkName(name, 1 + static_cast<int>(input.below(300)), 20 + input.below(226));
    const Place place;
    const std::string volumeTrash = "volume/.Trash-" + std::to_string(::geteuid());
    for (int count = 0; count < 2; ++count) {
        place.trashAndCheck("home", name, "home/Trash", "");
        place.trashAndCheck("volume", name, volumeTrash, "/volume");
    }
}

}  // namespace vantrel::fuzz
