#include "radios/device_capabilities.h"

#include "platform/capabilities.h"

#include <array>
#include <cstdio>

namespace noctara {

namespace {

constexpr const char* graphicsServices =
    "/System/Library/PrivateFrameworks/GraphicsServices.framework/GraphicsServices";

/// Reports list the capabilities in this order.
constexpr std::array knownCapabilities{
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

} // namespace

DeviceCapabilities::DeviceCapabilities(const Platform& phone) : platform(phone) {}

bool DeviceCapabilities::supportsCapability(const std::string& name) {
    const LibraryRef library = platform.libraries->open(graphicsServices);
    const FunctionRef function = platform.libraries->find(library, "GSSystemHasCapability");
    const int answer = platform.capabilities->callGSSystemHasCapability(function, name);
    platform.libraries->close(library);
    return answer != 0;
}

std::optional<PropertyList> DeviceCapabilities::fetchCapability(const std::string& name) {
    const LibraryRef library = platform.libraries->open(graphicsServices);
    const FunctionRef function = platform.libraries->find(library, "GSSystemCopyCapability");
    auto value = platform.capabilities->callGSSystemCopyCapability(function, name);
    platform.libraries->close(library);
    return value;
}

std::vector<std::string> DeviceCapabilities::capabilityArray() {
    std::vector<std::string> supported;
    for (const char* name : knownCapabilities)
        if (supportsCapability(name))
            supported.emplace_back(name);
    return supported;
}

void DeviceCapabilities::scanCapabilities() {
    const auto marketingName = fetchCapability("marketing-name");
    const auto* text = marketingName ? marketingName->as<std::string>() : nullptr;
    std::printf("Device: %s\n", text ? text->c_str() : "(null)");
    for (const char* name : knownCapabilities)
        std::printf("%s: %s\n", name, supportsCapability(name) ? "Yes" : "No");
}

} // namespace noctara
