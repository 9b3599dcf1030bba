#include "support/TreeSnapshot.h"

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <vector>

#include "support/TemporaryFolder.h"

namespace vantrel::test {

namespace fs = std::filesystem;

namespace {

void describe(const std::string& path, const std::string& relative, TreeSnapshot& into) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0) return;
    std::ostringstream text;
    text << std::oct << status.st_mode << std::dec << " " << status.st_mtim.tv_sec << "."
         << status.st_mtim.tv_nsec;
    if (S_ISREG(status.st_mode)) text << " " << contentOf(path);
    if (S_ISLNK(status.st_mode)) text << " -> " << fs::read_symlink(path).string();
    into[relative] = text.str();
    if (!S_ISDIR(status.st_mode)) return;
    for (const std::string& name : namesIn(path)) {
        const std::string below = "/" + name;
        describe(path + below, relative + below, into);
    }
}

}  // namespace

TreeSnapshot snapshotOf(const std::string& path) {
    TreeSnapshot snapshot;
    describe(path, "", snapshot);
    return snapshot;
}

std::vector<std::string> namesIn(const std::string& path) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(path)) names.push_back(entry.path().filename());
    std::ranges::sort(names);
    return names;
}

}  // namespace vantrel::test
