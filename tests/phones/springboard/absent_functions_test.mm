/// What the adapter answers on a system that lacks some of the phone's functions. Nothing in this
/// program defines those of CoreTelephony, AppSupport and GraphicsServices, nor BluetoothManager.
#include "phones/springboard/services.h"
#include "platform/bluetooth.h"
#include "platform/capabilities.h"
#include "platform/cellular.h"
#include "platform/wake_scheduler.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace noctara {
namespace {

using testing::IsEmpty;
using enum DataRate;

TEST(ASystemWithoutTheFunctions, has_no_cellular_data) {
    auto& cellular = springBoardCellular();
    EXPECT_FALSE(cellular.dataPlanIsEnabled());
    EXPECT_FALSE(cellular.registrationDataIsEnabled());
    cellular.setDataPlanIsEnabled(true);
    EXPECT_FALSE(cellular.dataPlanIsEnabled());
}

TEST(ASystemWithoutTheFunctions, has_no_data_rates) {
    auto& cellular = springBoardCellular();
    EXPECT_EQ(cellular.currentMaxAllowedDataRate(), kCTRegistrationDataRateUnknown);
    EXPECT_FALSE(cellular.setMaxAllowedDataRate(kCTRegistrationDataRate3G));
    EXPECT_THAT(cellular.supportedDataRates(), IsEmpty());
}

TEST(ASystemWithoutTheFunctions, reaches_no_telephony_server) {
    EXPECT_EQ(springBoardCellular().createServerConnection(nullptr), nullptr);
}

TEST(ASystemWithoutTheFunctions, has_no_capability) {
    EXPECT_EQ(springBoardCapabilities().linkedGSSystemHasCapability("wifi"), 0);
}

TEST(ASystemWithoutTheFunctions, ignores_wake_ups) {
    EXPECT_NO_FATAL_FAILURE(springBoardWakes().schedule({0}, "com.quorbit.Noctara"));
    EXPECT_NO_FATAL_FAILURE(springBoardWakes().cancel({0}, "com.quorbit.Noctara"));
}

TEST(ASystemWithoutTheFunctions, has_bluetooth_off) {
    auto& bluetooth = springBoardBluetooth();
    bluetooth.setPowered(true);
    bluetooth.setEnabled(true);
    EXPECT_FALSE(bluetooth.enabled());
    EXPECT_FALSE(bluetooth.connected());
}

} // namespace
} // namespace noctara
