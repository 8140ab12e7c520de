/// What `RadiosLib` finds out once about the device: which data rates its radio supports, and
/// whether it can choose between two of them.
#include "platform/capabilities.h"
#include "platform/device.h"
#include "platform/system_log.h"
#include "radios/radios_lib.h"

#include <algorithm>

namespace noctara {

namespace {

/// Systems up to this CoreFoundation version have no MobileGestalt library.
constexpr double lastVersionWithoutGestalt = 793.0;

constexpr std::int32_t phoneIdiom = 0;

} // namespace

void* cachedMGGetBoolAnswer = nullptr;

extern "C" void callbackCTServerConnectionCreate() {
    if (processPlatform)
        processPlatform->log->write("callbackCTServerConnectionCreate");
}

RadiosLib::RadiosLib(const Platform& phone) : platform(phone) {
    getDeviceKind(nullptr);
    _is3GCapable = detectRadioCapabilities();
}

std::int32_t RadiosLib::getDeviceKind(void*) {
    using enum DataRate;
    if (deviceKind != kindUnknown)
        return deviceKind;
    const ServerConnectionRef connection =
        platform.cellular->createServerConnection(callbackCTServerConnectionCreate);
    if (!connection)
        return deviceKind;

    const auto rates = platform.cellular->supportedDataRates();
    const auto offers = [&](DataRate rate) {
        return std::find(rates.begin(), rates.end(), rate) != rates.end();
    };
    deviceKind = kindNoPair;
    if (offers(kCTRegistrationDataRate3G) && offers(kCTRegistrationDataRate4G))
        deviceKind = kind3G4G;
    else if (offers(kCTRegistrationDataRate2G) && offers(kCTRegistrationDataRate3G))
        deviceKind = kind2G3G;
    platform.cellular->releaseConnection(connection);
    return deviceKind;
}

bool RadiosLib::detectRadioCapabilities() {
    const std::string machine = platform.device->machine();
    if (machine == "iPhone1,1" || machine.find("iPod") != machine.npos)
        return false;
    if (machine.find("iPad") != machine.npos && !supportsCapability("cellular-data"))
        return false;
    switch (getDeviceKind(nullptr)) {
    case kind3G4G:
        // Called by the constructor only, so later changes of cellular data have no effect.
        return platform.cellular->dataPlanIsEnabled();
    case kind2G3G:
        return platform.device->userInterfaceIdiom() == phoneIdiom;
    default:
        return false;
    }
}

bool RadiosLib::supportsCapability(const std::string& name) {
    if (platform.device->coreFoundationVersionNumber() <= lastVersionWithoutGestalt)
        return platform.capabilities->linkedGSSystemHasCapability(name) != 0;
    if (!cachedMGGetBoolAnswer) {
        // The library is never closed, because the function is used until the process ends.
        const LibraryRef library = platform.libraries->open("/usr/lib/libMobileGestalt.dylib");
        if (!library)
            return false;
        cachedMGGetBoolAnswer = platform.libraries->find(library, "MGGetBoolAnswer");
        if (!cachedMGGetBoolAnswer)
            return false;
    }
    return platform.capabilities->callMGGetBoolAnswer(cachedMGGetBoolAnswer, name) & 1;
}

} // namespace noctara
