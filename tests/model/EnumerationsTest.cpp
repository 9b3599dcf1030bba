#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>

#include "model/SizeDisplayMode.h"
#include "model/SortOrder.h"
#include "model/VantrelState.h"

namespace vantrel {
namespace {

TEST(SizeDisplayMode, togglesBetweenItsTwoCases) {
    SizeDisplayMode mode = SizeDisplayMode::humanReadable;
    toggle(mode);
    EXPECT_EQ(mode, SizeDisplayMode::rawBytes);
    toggle(mode);
    EXPECT_EQ(mode, SizeDisplayMode::humanReadable);
}

TEST(SortDirection, togglesBetweenItsTwoCases) {
    SortDirection direction = SortDirection::ascending;
    toggle(direction);
    EXPECT_EQ(direction, SortDirection::descending);
    toggle(direction);
    EXPECT_EQ(direction, SortDirection::ascending);
}

TEST(SortField, hasItsFourCasesInOrderWithTheirRawValues) {
    ASSERT_EQ(allSortFields.size(), 4U);
    EXPECT_EQ(allSortFields[0], SortField::name);
    EXPECT_EQ(allSortFields[1], SortField::size);
    EXPECT_EQ(allSortFields[2], SortField::date);
    EXPECT_EQ(allSortFields[3], SortField::ext);
    EXPECT_EQ(rawValue(SortField::name), "Name");
    EXPECT_EQ(rawValue(SortField::size), "Size");
    EXPECT_EQ(rawValue(SortField::date), "Date");
    EXPECT_EQ(rawValue(SortField::ext), "Extension");
}

TEST(SortField, isMadeFromExactlyItsRawValuesAndLetterCaseCounts) {
    EXPECT_EQ(sortFieldFromRawValue("Name"), SortField::name);
    EXPECT_EQ(sortFieldFromRawValue("Size"), SortField::size);
    EXPECT_EQ(sortFieldFromRawValue("Date"), SortField::date);
    EXPECT_EQ(sortFieldFromRawValue("Extension"), SortField::ext);
    EXPECT_EQ(sortFieldFromRawValue("extension"), std::nullopt);
    EXPECT_EQ(sortFieldFromRawValue("ext"), std::nullopt);
    EXPECT_EQ(sortFieldFromRawValue(""), std::nullopt);
}

TEST(SortField, isHashedByItsRawValue) {
    EXPECT_EQ(std::hash<SortField>()(SortField::ext), std::hash<std::string_view>()("Extension"));
}

TEST(VantrelState, onlyCalculatedIsCalculated) {
    EXPECT_TRUE(isCalculated(state::Calculated{1, 1}));
    EXPECT_FALSE(isCalculated(state::Calculating{1, 1}));
    EXPECT_FALSE(isCalculated(state::Error{"x"}));
    EXPECT_FALSE(isCalculated(state::NotCalculated{}));
    EXPECT_FALSE(isCalculated(state::Parent{}));
}

TEST(VantrelState, hasBytesWhileCalculatingAndWhenCalculatedAndNoneOtherwise) {
    EXPECT_EQ(bytes(state::Calculating{12, 3}), 12);
    EXPECT_EQ(bytes(state::Calculated{34, 5}), 34);
    EXPECT_EQ(bytes(state::Error{"x"}), 0);
    EXPECT_EQ(bytes(state::NotCalculated{}), 0);
    EXPECT_EQ(bytes(state::Parent{}), 0);
}

TEST(VantrelState, isEqualWhenCaseAndValuesAre) {
    EXPECT_EQ(VantrelState(state::Calculating{1, 2}), VantrelState(state::Calculating{1, 2}));
    EXPECT_NE(VantrelState(state::Calculating{1, 2}), VantrelState(state::Calculating{1, 3}));
    EXPECT_NE(VantrelState(state::Calculating{1, 2}), VantrelState(state::Calculated{1, 2}));
    EXPECT_EQ(VantrelState(state::Error{"a"}), VantrelState(state::Error{"a"}));
    EXPECT_NE(VantrelState(state::Error{"a"}), VantrelState(state::Error{"b"}));
    EXPECT_EQ(VantrelState(state::Parent{}), VantrelState(state::Parent{}));
}

}  // namespace
}  // namespace vantrel
