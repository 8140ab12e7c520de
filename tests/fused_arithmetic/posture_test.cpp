/// The posture, compiled for a processor with fused multiply-add. That instruction rounds once
/// where a multiplication and an addition round twice.
#include "monitor/posture.h"

#include <gtest/gtest.h>

namespace contracted {

double computeTiltAngle(double* length, double x, double y, double z);

} // namespace contracted

namespace noctara {
namespace {

class FusedArithmetic : public testing::Test {
protected:
    void SetUp() override {
#ifdef __x86_64__
        if (!__builtin_cpu_supports("fma"))
            GTEST_SKIP() << "this processor has no fused multiply-add";
#endif
    }

    double length = 0;
};

TEST_F(FusedArithmetic, does_not_change_the_length_of_a_reading) {
    const double angle = computeTiltAngle(&length, 0.6, 0.7, 0.6);
    EXPECT_EQ(length, 1.1);
    EXPECT_FALSE(liesInPosture(angle, length, 4.0, true));
}

TEST_F(FusedArithmetic, would_let_the_phone_be_at_rest_if_the_compiler_could_use_it) {
    const double angle = contracted::computeTiltAngle(&length, 0.6, 0.7, 0.6);
    EXPECT_LT(length, 1.1);
    EXPECT_TRUE(liesInPosture(angle, length, 4.0, true));
}

} // namespace
} // namespace noctara
