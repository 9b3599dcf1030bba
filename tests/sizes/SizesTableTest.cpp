#include "sizes/SizesTable.h"

#include <gtest/gtest.h>

namespace vantrel::sizes {
namespace {

std::vector<std::string> pathsOf(const std::vector<Row>& rows) {
    std::vector<std::string> paths;
    paths.reserve(rows.size());
    for (const Row& row : rows) paths.push_back(row.path);
    return paths;
}

TEST(SizesTable, putsTheLargestFirstAndEqualSizesByName) {
    std::vector<Row> rows{{"./b9", {5, 1}}, {"./small", {1, 9}}, {"./b10", {5, 1}}, {"./large", {7, 1}}};
    sortRows(rows, RowOrder::largestFirst);
    EXPECT_EQ(pathsOf(rows), (std::vector<std::string>{"./large", "./b10", "./b9", "./small"}));
}

TEST(SizesTable, sortsNamesBytewise) {
    std::vector<Row> rows{{"./b10", {5, 1}}, {"./c", {1, 9}}, {"./b9", {0, 1}}, {"./A", {7, 1}}};
    sortRows(rows, RowOrder::byName);
    EXPECT_EQ(pathsOf(rows), (std::vector<std::string>{"./A", "./b10", "./b9", "./c"}));
}

TEST(SizesTable, writesColumnsForPeople) {
    EXPECT_EQ(lineOf({"/usr/lib", {1'536, 12}}, NumberStyle::humanReadable, PathStyle::raw),
              "     1.5 K          12  /usr/lib\n");
    EXPECT_EQ(lineOf({"e", {0, 0}}, NumberStyle::humanReadable, PathStyle::raw),
              "       0 B           0  e\n");
}

TEST(SizesTable, writesExactBytesBetweenTabs) {
    EXPECT_EQ(lineOf({"/usr/lib", {9'223'372'036'854'775'807, 66610}}, NumberStyle::bytes, PathStyle::raw),
              "9223372036854775807\t66610\t/usr/lib\n");
}

TEST(SizesTable, keepsTheBytesOfPathsForProgramsAndMakesThemHarmlessForTerminals) {
    const Row row{"a\x1B[2J\xFF", {1, 1}};
    EXPECT_EQ(lineOf(row, NumberStyle::bytes, PathStyle::raw), "1\t1\ta\x1B[2J\xFF\n");
    EXPECT_EQ(lineOf(row, NumberStyle::bytes, PathStyle::harmless), "1\t1\ta?[2J?\n");
}

TEST(SizesTable, saysHowFarCountingHasCome) {
    EXPECT_EQ(liveLine(3, 20, {2'097'152, 45}, 80), "3 of 20 folders, 2.0 M, 45 items");
    EXPECT_EQ(liveLine(3, 20, {2'097'152, 45}, 10), "3 of 20 fo");
}

}  // namespace
}  // namespace vantrel::sizes
