#include "sizes/FolderContents.h"

namespace vantrel::sizes {

namespace {

using walking::EntryKind;

// The kind of the entry, looked up where the directory does not give it.
EntryKind kindOf(walking::DirectoryReader& reader, int folder, const walking::Entry& entry) {
    if (entry.kind != EntryKind::unknown) return entry.kind;
    walking::Measure measure;
    return reader.measure(folder, entry.name, measure) ? EntryKind::link : measure.kind;
}

}  // namespace

Result<OwnFiles> readFolder(walking::DirectoryReader& reader, const std::string& path,
                            const std::function<void(const std::string& name)>& foundFolder) {
    walking::Volume volume;
    const auto folder = reader.openRoot(path, volume);
    if (!folder) return folder.error();
    const int descriptor = folder->number();
    const auto stream = reader.beginReading(descriptor);
    if (!stream) return stream.error();
    OwnFiles ownFiles = OwnFiles::none;
    walking::Entry entry;
    while (reader.read(descriptor, stream->get()) == walking::Batch::names) {
        while (reader.next(entry)) {
            const EntryKind kind = kindOf(reader, descriptor, entry);
            if (kind == EntryKind::folder) foundFolder(entry.name);
            if (kind == EntryKind::other) ownFiles = OwnFiles::some;
        }
    }
    return ownFiles;
}

}  // namespace vantrel::sizes
