#include <gtest/gtest.h>

#include <cstdlib>
#include <string_view>

#include "qt/QtTestSupport.h"
#include "qt/accessibility/QtAccessibleContent.h"

namespace {

vantrel::QtApplication* theApplication = nullptr;

}  // namespace

namespace vantrel::test {

QtApplication& application() {
    return *theApplication;
}

}  // namespace vantrel::test

int main(int argc, char** argv) {
    // On its usual platform it has several screens.
    const char* const platform = std::getenv("QT_QPA_PLATFORM");
    if (platform == nullptr || std::string_view(platform) == "offscreen")
        ::setenv("QT_QPA_PLATFORM", "offscreen:configfile=" VANTREL_TEST_SCREENS, 1);
    testing::InitGoogleTest(&argc, argv);
    vantrel::QtApplication application(argv[0]);
    vantrel::installQtAccessibility();
    theApplication = &application;
    const int status = RUN_ALL_TESTS();
    theApplication = nullptr;
    return status;
}
