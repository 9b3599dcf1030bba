#include "commander/ChangeWatch.h"

#include <algorithm>
#include <utility>

#include "base/Paths.h"

namespace vantrel {

namespace {

template <class T>
void append(std::vector<T>& all, const std::vector<T>& more) {
    all.insert(all.end(), more.begin(), more.end());
}

}  // namespace

ChangeWatch::ChangeWatch(FileManager& files, std::vector<std::string> paths) : files_(files) {
    for (std::string& path : paths) {
        before_.push_back(look(path));
        before_.back().path = std::move(path);
    }
}

// Where the folder around it is missing, the next one that is there has to do.
ContentsChange::Item ChangeWatch::look(const std::string& path) const {
    ContentsChange::Item item{.path = path, .afterwards = ContentsChange::Afterwards::gone};
    if (const auto identity = files_.identityOf(path)) {
        item.identities = {*identity};
        item.afterwards = ContentsChange::Afterwards::there;
    }
    std::string folder = path;
    do {
        folder = paths::deletingLastComponent(folder);
        item.above = files_.ancestryOf(folder);
    } while (item.above.empty() && folder.size() > 1);
    return item;
}

ChangeWatch::Items ChangeWatch::lookAgain() const {
    Items items;
    for (const ContentsChange::Item& before : before_) {
        ContentsChange::Item item = look(before.path);
        append(item.identities, before.identities);
        append(item.above, before.above);
        items.push_back(std::move(item));
    }
    return items;
}

// A rename happens or not. What has to be copied to another file system and removed here may be gone in part.
ChangeWatch::Items ChangeWatch::lookForWhatWasTakenAway() const {
    Items items = lookAgain();
    ContentsChange::Item& item = items.front();
    if (item.afterwards == ContentsChange::Afterwards::gone ||
        before_.front().afterwards == ContentsChange::Afterwards::gone) {
        return items;
    }
    const bool isFar = std::any_of(items.begin() + 1, items.end(), [&](const ContentsChange::Item& place) {
        return place.above.empty() || place.above.front().device != item.identities.front().device;
    });
    if (isFar) item.afterwards = ContentsChange::Afterwards::inPart;
    return items;
}

ContentsChange ChangeWatch::afterTakingAway() const {
    return ContentsChange(lookForWhatWasTakenAway());
}

ContentsChange ChangeWatch::afterChange() const {
    return ContentsChange(lookAgain());
}

// It is the same item when it kept its identity. Across file systems it is a copy, which may take more or
// less room. By a path with ".." in it the new place is not known well enough.
ContentsChange ChangeWatch::afterMove() const {
    const std::string& from = before_.front().path;
    const std::string& to = before_.back().path;
    Items items = lookForWhatWasTakenAway();
    const bool isSame = before_.front().afterwards == ContentsChange::Afterwards::there &&
                        items.front().afterwards == ContentsChange::Afterwards::gone &&
                        files_.identityOf(to) == before_.front().identities.front();
    if (!isSame || to != paths::normalized(to)) return ContentsChange(std::move(items));
    return ContentsChange(std::move(items), ContentsChange::Renaming{from, to});
}

}  // namespace vantrel
