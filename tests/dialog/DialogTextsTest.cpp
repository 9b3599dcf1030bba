#include "dialog/DialogTexts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantrel::dialog {
namespace {

using testing::ElementsAre;
using Texts = std::vector<std::string>;

std::vector<Texts> rowsOf(const DialogType& type, const ViewerRoom& room = {}) {
    std::vector<Texts> rows;
    for (const BodyRow& row : bodyRows(type, room)) {
        rows.emplace_back();
        for (const StyledText& text : row) rows.back().push_back(text.text);
    }
    return rows;
}

TEST(DialogTexts, aRowOfTheKeyboardReferenceIsAKeyAndWhatItDoes) {
    const std::vector<Texts> rows = rowsOf(Help{});
    ASSERT_EQ(rows.size(), 20U);
    EXPECT_THAT(rows.front(), ElementsAre("TAB         ", "Switch Active Panel (Left <-> Right)"));
    EXPECT_THAT(rows.back(), ElementsAre("TYPE CHARS  ", "Quick-search & jump to matching item"));
}

TEST(DialogTexts, ofAFileThereIsNoMoreThanThereIsRoomFor) {
    EXPECT_THAT(rowsOf(Viewer{"f", "abcdef\nxyz\nthird"}, {.lines = 2, .bytesPerLine = 4}),
                ElementsAre(Texts{"abcd"}, Texts{"xyz"}));
    EXPECT_THAT(rowsOf(Viewer{"f", "abcdef"}), testing::IsEmpty());
}

TEST(DialogTexts, theFieldBeginsWithTheDestinationTheNameOrAProposal) {
    EXPECT_EQ(proposedInput(Copy{"a", "/x/a", "/y/a\xFF"}), "/y/a\xFF");
    EXPECT_EQ(proposedInput(Move{"a", "/x/a", "a"}), "a");
    EXPECT_EQ(proposedInput(Mkdir{"/x"}), "New_Folder");
    for (const DialogType& type :
         {DialogType(Delete{}), DialogType(Viewer{}), DialogType(Help{}), DialogType(Sort{})}) {
        EXPECT_EQ(proposedInput(type), std::nullopt);
    }
}

}  // namespace
}  // namespace vantrel::dialog
