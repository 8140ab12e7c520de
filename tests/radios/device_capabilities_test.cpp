/// The capability queries on the device object: their calls, answers and report.
#include "radios/device_capabilities.h"

#include "platform/capabilities.h"
#include "tests/a_night.h"

#include <algorithm>

namespace noctara {

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

const std::vector<std::string> allNames{
    "720p",
    "armv6",
    "armv7",
    "accelerometer",
    "accessibility",
    "apple-internal-install",
    "auto-focus-camera",
    "bluetooth",
    "still-camera",
    "camera-flash",
    "cellular-data",
    "contains-cellular-radio",
    "data-plan",
    "delay-sleep-for-headset-click",
    "fcc-logos-via-software",
    "application-display-identifiers",
    "displayport",
    "encode-aac",
    "encrypted-data-partition",
    "front-facing-camera",
    "gps",
    "gas-gauge-battery",
    "green-tea",
    "gyroscope",
    "h264-encoder",
    "all-features",
    "hidpi",
    "hide-non-default-apps",
    "io-surface-backed-images",
    "international-settings",
    "launch-applications-while-animating",
    "load-thumbnails-while-scrolling",
    "location-services",
    "mms",
    "magnetometer",
    "microphone",
    "multitasking",
    "nike-ipod",
    "not-green-tea",
    "opengles-1",
    "opengles-2",
    "peer-peer",
    "piezo-clicker",
    "stand-alone-contacts",
    "proximity-sensor",
    "ringer-switch",
    "sms",
    "sensitive-ui",
    "tv-out-crossfade",
    "tv-out-settings",
    "unified-ipod",
    "voip",
    "venice",
    "video-camera",
    "voice-control",
    "volume-buttons",
    "wifi",
    "wildcat",
    "youtube",
    "youtubePlugin",
    "telephony",
};

const std::string openTheLibrary =
    R"(dlopen ["/System/Library/PrivateFrameworks/GraphicsServices.framework/GraphicsServices"])"
    " -> true";

class ADevicesCapabilities : public ANight {
protected:
    DeviceCapabilities device() {
        switchOn();
        return DeviceCapabilities(phone().platform());
    }

    static std::string reportOf(DeviceCapabilities& capabilities) {
        testing::internal::CaptureStdout();
        capabilities.scanCapabilities();
        return testing::internal::GetCapturedStdout();
    }
};

/// A graphics-services library with answers of its own.
class OtherCapabilityFunctions final : public CapabilityFunctions {
public:
    int linkedGSSystemHasCapability(const std::string&) override { return 0; }
    int callGSSystemHasCapability(FunctionRef, const std::string&) override { return answer; }
    std::optional<PropertyList> callGSSystemCopyCapability(FunctionRef,
                                                           const std::string&) override {
        return value;
    }
    int callMGGetBoolAnswer(FunctionRef, const std::string&) override { return 1; }

    int answer = 0;
    std::optional<PropertyList> value;
};

TEST_F(ADevicesCapabilities, are_asked_of_a_library_opened_and_closed_for_every_question) {
    scenario.phone.capabilities = {"gps"};
    auto capabilities = device();

    EXPECT_TRUE(capabilities.supportsCapability("gps"));
    EXPECT_FALSE(capabilities.supportsCapability("voip"));

    EXPECT_THAT(calls.calls(),
                ElementsAre(openTheLibrary, R"(dlsym ["GSSystemHasCapability"] -> true)",
                            R"(GSSystemHasCapability ["gps"] -> true)", "dlclose", openTheLibrary,
                            R"(dlsym ["GSSystemHasCapability"] -> true)",
                            R"(GSSystemHasCapability ["voip"] -> false)", "dlclose"));
    EXPECT_EQ(phone().device.openLibraries, 0);
}

TEST_F(ADevicesCapabilities, take_any_answer_but_zero_for_a_yes) {
    switchOn();
    OtherCapabilityFunctions functions;
    Platform altered = phone().platform();
    altered.capabilities = &functions;
    DeviceCapabilities capabilities(altered);

    for (const int yes : {1, 2, -1, 256}) {
        functions.answer = yes;
        EXPECT_TRUE(capabilities.supportsCapability("gps")) << yes;
    }
    functions.answer = 0;
    EXPECT_FALSE(capabilities.supportsCapability("gps"));
}

TEST_F(ADevicesCapabilities, have_values_that_are_handed_on_once_the_library_is_closed) {
    auto capabilities = device();

    EXPECT_EQ(capabilities.fetchCapability("marketing-name"), PropertyList("iPhone 4S"));

    EXPECT_THAT(calls.calls(),
                ElementsAre(openTheLibrary, R"(dlsym ["GSSystemCopyCapability"] -> true)",
                            R"(GSSystemCopyCapability ["marketing-name"] -> "iPhone 4S")",
                            "dlclose"));
    EXPECT_EQ(phone().device.openLibraries, 0);
}

TEST_F(ADevicesCapabilities, may_have_a_value_of_any_kind_or_none) {
    switchOn();
    OtherCapabilityFunctions functions;
    Platform altered = phone().platform();
    altered.capabilities = &functions;
    DeviceCapabilities capabilities(altered);

    EXPECT_EQ(capabilities.fetchCapability("gps"), std::nullopt);
    functions.value = PropertyList(Array{1, "two"});
    EXPECT_EQ(capabilities.fetchCapability("gps"), PropertyList(Array{1, "two"}));
}

TEST_F(ADevicesCapabilities, are_listed_in_the_lists_own_order) {
    scenario.phone.capabilities = {"telephony", "wifi", "not in the list", "still-camera", "720p"};
    auto capabilities = device();

    EXPECT_THAT(capabilities.capabilityArray(),
                ElementsAre("720p", "still-camera", "wifi", "telephony"));

    std::vector<std::string> questions;
    for (const auto& name : allNames)
        questions.push_back("GSSystemHasCapability [\"" + name + "\"] -> " +
                            (testing::Matches(testing::Contains(name))(scenario.phone.capabilities)
                                 ? "true"
                                 : "false"));
    EXPECT_THAT(calls.of({"GSSystemHasCapability"}), ElementsAreArray(questions));
}

TEST_F(ADevicesCapabilities, are_all_sixty_one_on_a_device_with_everything) {
    scenario.phone.capabilities.assign(allNames.rbegin(), allNames.rend());
    auto capabilities = device();

    EXPECT_EQ(allNames.size(), 61U);
    EXPECT_THAT(capabilities.capabilityArray(), ElementsAreArray(allNames));
}

TEST_F(ADevicesCapabilities, are_an_empty_list_on_a_device_with_none) {
    scenario.phone.capabilities = {};
    auto capabilities = device();

    EXPECT_THAT(capabilities.capabilityArray(), IsEmpty());
    EXPECT_EQ(calls.count("GSSystemHasCapability"), 61U);
}

TEST_F(ADevicesCapabilities, are_reported_in_sixty_two_lines_on_standard_output) {
    scenario.phone.capabilities = {"wifi", "youtubePlugin", "720p"};
    auto capabilities = device();

    std::string expected = "Device: iPhone 4S\n";
    for (const auto& name : allNames)
        expected += name + (name == "wifi" || name == "youtubePlugin" || name == "720p" ? ": Yes\n"
                                                                                        : ": No\n");
    const auto report = reportOf(capabilities);

    EXPECT_EQ(report, expected);
    EXPECT_EQ(std::count(report.begin(), report.end(), '\n'), 62);
    EXPECT_THAT(calls.logged(), IsEmpty());
    EXPECT_THAT(calls.of({"GSSystemHasCapability", "GSSystemCopyCapability"}).front(),
                R"(GSSystemCopyCapability ["marketing-name"] -> "iPhone 4S")");
}

TEST_F(ADevicesCapabilities, are_none_without_the_library) {
    auto capabilities = device();
    phone().device.hasGraphicsServices = false;

    EXPECT_FALSE(capabilities.supportsCapability("wifi"));
    EXPECT_EQ(capabilities.fetchCapability("marketing-name"), std::nullopt);
    EXPECT_THAT(capabilities.capabilityArray(), IsEmpty());
    EXPECT_THAT(reportOf(capabilities), testing::StartsWith("Device: (null)\n720p: No\n"));
    EXPECT_EQ(calls.count("GSSystemHasCapability"), 0U);
    EXPECT_EQ(calls.count("dlclose"), 0U);
}

TEST_F(ADevicesCapabilities, are_asked_of_the_library_as_it_is_now) {
    auto capabilities = device();
    phone().device.hasGraphicsServices = false;
    EXPECT_FALSE(capabilities.supportsCapability("wifi"));

    phone().device.hasGraphicsServices = true;
    EXPECT_TRUE(capabilities.supportsCapability("wifi"));
}

} // namespace

} // namespace noctara
