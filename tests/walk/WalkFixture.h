#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <atomic>
#include <memory>
#include <stop_token>
#include <string>

#include "platform/Clock.h"
#include "platform/DirectoryReader.h"
#include "posix/DirectoryReaders.h"
#include "support/ManualClock.h"
#include "support/NativeWalks.h"
#include "support/TemporaryFolder.h"
#include "walk/RecordingObserver.h"
#include "walk/WalkPool.h"

namespace vantrel::test {

/// A walk that was handed to a pool.
struct SubmittedWalk {
    std::stop_source stop;
    std::shared_ptr<WalkRecord> record = std::make_shared<WalkRecord>();
};

inline SubmittedWalk submit(WalkQueue& pool, const std::string& root,
                            RecordingObserver::Hook onProgress = {}) {
    SubmittedWalk walk;
    pool.submit(root, walk.stop.get_token(),
                std::make_unique<RecordingObserver>(walk.record, std::move(onProgress)));
    return walk;
}

/// Goes on by a second with every reading, so that a report is due after every entry.
class HurryingClock final : public Clock {
public:
    Seconds now() const override { return Seconds(++readings_); }

private:
    mutable std::atomic<int> readings_{0};
};

/// Bytes that the file system has allocated for one entry: st_blocks, in units of 512 bytes (stat(2)).
inline std::int64_t allocatedBytes(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
    return static_cast<std::int64_t>(status.st_blocks) * 512;
}

/// Walks with a pool of four threads, once with the reader of this system and once with the portable one.
class EveryReader : public testing::TestWithParam<WalkPool::ReaderFactory> {
protected:
    WalkPool::Options options() const {
        WalkPool::Options options = nativeWalks();
        options.threads = 4;
        options.makeReader = GetParam();
        return options;
    }

    std::optional<WalkRecord::End> walk(const std::string& root) const { return walk(root, options()); }

    std::optional<WalkRecord::End> walk(const std::string& root, const WalkPool::Options& options) const {
        WalkPool pool(clock, options);
        const SubmittedWalk walk = submit(pool, root);
        const auto end = walk.record->waitForEnd();
        EXPECT_FALSE(walk.record->sawDisorder());
        return end;
    }

    ManualClock clock;
    TemporaryFolder folder;
};

inline WalkRecord::End finished(std::int64_t bytes, std::int64_t items) {
    return {WalkOutcome::finished, {bytes, items}};
}

/// Instantiates a suite derived from EveryReader.
#define VANTREL_FOR_EVERY_READER(suite)                                                               \
    INSTANTIATE_TEST_SUITE_P(Readers, suite, testing::Values(&makeNativeReader, &makePortableReader), \
                             [](const auto& tested) { return tested.index == 0 ? "native" : "portable"; })

}  // namespace vantrel::test
