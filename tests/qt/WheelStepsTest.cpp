#include "qt/WheelSteps.h"

#include <gtest/gtest.h>

namespace vantrel::test {

TEST(WheelSteps, aNotchIsOneStepAndItsSignIsItsDirection) {
    WheelSteps wheel;
    EXPECT_EQ(wheel.add(120), 1);
    EXPECT_EQ(wheel.add(-120), -1);
}

TEST(WheelSteps, aFastTurnIsAsManyStepsAsNotches) {
    WheelSteps wheel;
    EXPECT_EQ(wheel.add(360), 3);
    EXPECT_EQ(wheel.add(-240), -2);
}

TEST(WheelSteps, smallMovementsAddUpToSteps) {
    WheelSteps wheel;
    EXPECT_EQ(wheel.add(-50), 0);
    EXPECT_EQ(wheel.add(-50), 0);
    EXPECT_EQ(wheel.add(-50), -1);
    EXPECT_EQ(wheel.add(-89), 0);
    EXPECT_EQ(wheel.add(-1), -1);
}

TEST(WheelSteps, aTurnOfDirectionForgetsWhatWasUnderWay) {
    WheelSteps wheel;
    EXPECT_EQ(wheel.add(110), 0);
    EXPECT_EQ(wheel.add(-20), 0);
    EXPECT_EQ(wheel.add(110), 0);
    EXPECT_EQ(wheel.add(10), 1);
}

}  // namespace vantrel::test
