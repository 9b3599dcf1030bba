#pragma once

#include <gtest/gtest.h>

#include "platform/Canvas.h"

namespace vantrel::test {

/// What every canvas keeps when it measures text. `Subject` offers `Canvas& canvas()` and a monospaced
/// `Font font()`.
template <class Subject>
class TextMeasureContract : public testing::Test {
protected:
    Size sizeOf(std::string_view utf8) { return subject_.canvas().textSize(utf8, subject_.font()); }

private:
    Subject subject_;
};

TYPED_TEST_SUITE_P(TextMeasureContract);

TYPED_TEST_P(TextMeasureContract, noTextHasNoWidthAndTheHeightOfALine) {
    EXPECT_EQ(this->sizeOf("").width, 0);
    EXPECT_GT(this->sizeOf("").height, 0);
    EXPECT_EQ(this->sizeOf("").height, this->sizeOf("Agj").height);
}

TYPED_TEST_P(TextMeasureContract, everyCharacterOfAFixedPitchFontIsEquallyWide) {
    const double cell = this->sizeOf("M").width;
    EXPECT_GT(cell, 0);
    EXPECT_EQ(this->sizeOf("i.W ~").width, 5 * cell);
    EXPECT_EQ(this->sizeOf("╒══ é ══╕").width, 9 * cell);
}

REGISTER_TYPED_TEST_SUITE_P(TextMeasureContract, noTextHasNoWidthAndTheHeightOfALine,
                            everyCharacterOfAFixedPitchFontIsEquallyWide);

}  // namespace vantrel::test
