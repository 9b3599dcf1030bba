#include <gtest/gtest.h>

#include <cstdlib>

#include "qt/QtTestSupport.h"

namespace {

vantrel::QtApplication* theApplication = nullptr;

}  // namespace

namespace vantrel::test {

QtApplication& application() {
    return *theApplication;
}

}  // namespace vantrel::test

int main(int argc, char** argv) {
    ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
    testing::InitGoogleTest(&argc, argv);
    vantrel::QtApplication application(argv[0]);
    theApplication = &application;
    const int status = RUN_ALL_TESTS();
    theApplication = nullptr;
    return status;
}
