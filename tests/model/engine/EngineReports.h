#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "model/engine/VantrelEngine.h"

namespace vantrel::test {

/// What a request was told.
struct Report {
    std::int64_t bytes;
    std::int64_t items;
    bool isComplete;
    bool operator==(const Report&) const = default;
};

using Reports = std::shared_ptr<std::vector<Report>>;

/// Asks for a folder's total; all reports have to come on the thread that asks.
inline Reports requestOf(VantrelEngine& engine, const std::string& path, const FolderPlace& place = {}) {
    auto reports = std::make_shared<std::vector<Report>>();
    engine.calculateVantrel(
        path,
        [reports, main = std::this_thread::get_id()](std::int64_t bytes, std::int64_t items,
                                                     bool isComplete) {
            EXPECT_EQ(std::this_thread::get_id(), main);
            reports->push_back({bytes, items, isComplete});
        },
        place);
    return reports;
}

}  // namespace vantrel::test
