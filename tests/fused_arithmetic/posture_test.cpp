/// The posture, compiled for a processor with fused multiply-add. That instruction rounds once
/// where a multiplication and an addition round twice.
#include "monitor/posture.h"

#include <gtest/gtest.h>

namespace noctara {
namespace {

TEST(FusedArithmetic, does_not_change_the_length_of_a_reading) {
    if (!__builtin_cpu_supports("fma"))
        GTEST_SKIP() << "this processor has no fused multiply-add";
    double length = 0;
    const double angle = computeTiltAngle(&length, 0.6, 0.7, 0.6);
    EXPECT_EQ(length, 1.1);
    EXPECT_FALSE(liesInPosture(angle, length, 4.0, true));
}

} // namespace
} // namespace noctara
