#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "platform/DirectoryReader.h"
#include "walk/WalkPool.h"

namespace vantrel::test {

/// Does what another reader does; a test overrides the call that it wants to watch or to disturb.
class ForwardingReader : public walking::DirectoryReader {
public:
    explicit ForwardingReader(std::unique_ptr<DirectoryReader> real) : real_(std::move(real)) {}

    Result<FileDescriptor> openRoot(const std::string& path, walking::Volume& volume) override {
        return real_->openRoot(path, volume);
    }
    Result<FileDescriptor> openFolder(int parent, const char* name, walking::Volume& volume) override {
        return real_->openFolder(parent, name, volume);
    }
    Result<FileDescriptor> openBelow(int ancestor, const std::string& path,
                                     walking::Volume& volume) override {
        return real_->openBelow(ancestor, path, volume);
    }
    Result<std::unique_ptr<walking::DirectoryStream>> beginReading(int folder) override {
        return real_->beginReading(folder);
    }
    walking::Batch read(int folder, walking::DirectoryStream* stream) override {
        return real_->read(folder, stream);
    }
    bool reachedEnd(int folder, walking::Volume& volume) const override {
        return real_->reachedEnd(folder, volume);
    }
    int measuringFrom(int folder) override { return real_->measuringFrom(folder); }
    void rest() override { real_->rest(); }
    bool expectsMore() const override { return real_->expectsMore(); }
    bool next(walking::Entry& entry) override { return real_->next(entry); }
    void rewind() override { real_->rewind(); }
    std::error_code measure(int folder, const char* name, walking::Measure& measure) override {
        return real_->measure(folder, name, measure);
    }
    Result<walking::FolderLook> look(int folder, const char* name) override {
        return real_->look(folder, name);
    }
    Result<walking::FolderLook> look(int folder) override { return real_->look(folder); }
    walking::FolderTrust trust(int folder) override { return real_->trust(folder); }

private:
    std::unique_ptr<DirectoryReader> real_;
};

/// A factory that puts a `Reader(real, arguments...)` before the readers of another factory.
template <class Reader, class... Arguments>
WalkPool::ReaderFactory disturbed(const WalkPool::ReaderFactory& real, Arguments... arguments) {
    return [=] { return std::make_unique<Reader>(real(), arguments...); };
}

/// Leaves every kind to `measure`, as some file systems do.
class SilentAboutKinds final : public ForwardingReader {
public:
    using ForwardingReader::ForwardingReader;
    bool next(walking::Entry& entry) override {
        const bool found = ForwardingReader::next(entry);
        entry.kind = walking::EntryKind::unknown;
        return found;
    }
};

/// Counts calls, over all threads.
class CountingReader final : public ForwardingReader {
public:
    struct Counts {
        std::atomic<int> roots{0}, folders{0}, reopened{0}, measures{0};
    };

    CountingReader(std::unique_ptr<DirectoryReader> real, Counts* counts)
        : ForwardingReader(std::move(real)), counts_(counts) {}

    Result<FileDescriptor> openRoot(const std::string& path, walking::Volume& volume) override {
        ++counts_->roots;
        return ForwardingReader::openRoot(path, volume);
    }
    Result<FileDescriptor> openFolder(int parent, const char* name, walking::Volume& volume) override {
        ++counts_->folders;
        return ForwardingReader::openFolder(parent, name, volume);
    }
    Result<FileDescriptor> openBelow(int ancestor, const std::string& path,
                                     walking::Volume& volume) override {
        ++counts_->reopened;
        return ForwardingReader::openBelow(ancestor, path, volume);
    }
    std::error_code measure(int folder, const char* name, walking::Measure& measure) override {
        ++counts_->measures;
        return ForwardingReader::measure(folder, name, measure);
    }

private:
    Counts* counts_;
};

/// A door that calls stop at until the test opens it. Gives up after a minute.
class Gate {
public:
    void open() {
        std::lock_guard lock(lock_);
        isOpen_ = true;
        changed_.notify_all();
    }

    void pass() {
        std::unique_lock lock(lock_);
        ++arrived_;
        changed_.notify_all();
        changed_.wait_for(lock, std::chrono::minutes(1), [this] { return isOpen_; });
    }

    /// Waits until so many calls have come to the door.
    bool waitForArrivals(int count) {
        std::unique_lock lock(lock_);
        return changed_.wait_for(lock, std::chrono::minutes(1), [&] { return arrived_ >= count; });
    }

private:
    std::mutex lock_;
    std::condition_variable changed_;
    int arrived_ = 0;
    bool isOpen_ = false;
};

/// Stops before each call of `measure` at a gate.
class GatedReader final : public ForwardingReader {
public:
    GatedReader(std::unique_ptr<DirectoryReader> real, Gate* gate)
        : ForwardingReader(std::move(real)), gate_(gate) {}

    std::error_code measure(int folder, const char* name, walking::Measure& measure) override {
        gate_->pass();
        return ForwardingReader::measure(folder, name, measure);
    }

private:
    Gate* gate_;
};

}  // namespace vantrel::test
