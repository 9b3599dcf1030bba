#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "platform/Font.h"

namespace vantrel::test {

/// What every font catalogue keeps. `Subject` offers `const FontCatalog& fonts()` and the families
/// `installed()`, which has a bold face, and `withoutBold()`, which has none.
template <class Subject>
class FontCatalogContract : public testing::Test {
protected:
    const FontCatalog& fonts() { return subject_.fonts(); }
    Subject& subject() { return subject_; }

private:
    Subject subject_;
};

TYPED_TEST_SUITE_P(FontCatalogContract);

TYPED_TEST_P(FontCatalogContract, anInstalledFamilyAnswersToItsNameInTheSizeAskedFor) {
    for (const double size : {9.0, 13.0}) {
        EXPECT_EQ(this->fonts().fontNamed(this->subject().installed(), size),
                  (Font{this->subject().installed(), size, FontWeight::regular}));
    }
}

TYPED_TEST_P(FontCatalogContract, nothingAnswersToANameThatNoFamilyHas) {
    EXPECT_EQ(this->fonts().fontNamed("No Such Family", 13), std::nullopt);
    EXPECT_EQ(this->fonts().fontNamed("", 13), std::nullopt);
}

TYPED_TEST_P(FontCatalogContract, boldIsTheSameFamilyAndSizeAndStaysBold) {
    const Font bold{this->subject().installed(), 11, FontWeight::bold};
    EXPECT_EQ(this->fonts().convertToBold({bold.family, 11, FontWeight::regular}), bold);
    EXPECT_EQ(this->fonts().convertToBold(bold), bold);
}

TYPED_TEST_P(FontCatalogContract, aFamilyWithoutABoldFaceStaysAsItIs) {
    const Font regular{this->subject().withoutBold(), 13, FontWeight::regular};
    EXPECT_EQ(this->fonts().convertToBold(regular), regular);
}

TYPED_TEST_P(FontCatalogContract, thereAlwaysIsAMonospacedFaceOfTheSizeAndWeightAskedFor) {
    const Font regular = this->fonts().monospacedSystemFont(13, FontWeight::regular);
    EXPECT_NE(regular.family, "");
    EXPECT_EQ(regular, (Font{regular.family, 13, FontWeight::regular}));
    EXPECT_EQ(this->fonts().monospacedSystemFont(11, FontWeight::bold),
              (Font{regular.family, 11, FontWeight::bold}));
}

REGISTER_TYPED_TEST_SUITE_P(FontCatalogContract, anInstalledFamilyAnswersToItsNameInTheSizeAskedFor,
                            nothingAnswersToANameThatNoFamilyHas, boldIsTheSameFamilyAndSizeAndStaysBold,
                            aFamilyWithoutABoldFaceStaysAsItIs,
                            thereAlwaysIsAMonospacedFaceOfTheSizeAndWeightAskedFor);

}  // namespace vantrel::test
