/// The kinds of calls that the monitor makes to a phone, and their names in a trace.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace noctara {

enum class Operation : std::uint8_t {
    NSLog,
    bundleIdentifier,
    objc_getClass,
    MSHookMessageEx,
    IORegisterForSystemPower,
    CFRunLoopAddSource,
    IOAllowPowerChange,
    IOCancelPowerChange,
    notify_register_dispatch,
    notify_post,
    postNotification,
    NSThreadStart,
    performSelectorOnMainThread,
    sleep,
    startAccelerometerUpdates,
    stopAccelerometerUpdates,
    setAccelerometerUpdateInterval,
    deviceMotion,
    accelerometerData,
    AudioServicesCreateSystemSoundID,
    AudioServicesPlaySystemSound,
    AudioServicesDisposeSystemSoundID,
    fileExistsAtPath,
    initWithContentsOfFile,
    writeToFileAtomically,
    writeToFileInPlace,
    propertyListFromData,
    CPScheduleWakeAtDateWithIdentifier,
    CPCancelWakeAtDateWithIdentifier,
    isOnAC,
    sharedTelephonyManager,
    isInAirplaneMode,
    setIsInAirplaneMode,
    updateAirplaneMode,
    inCall,
    outgoingCallExists,
    incomingCallExists,
    activeCallExists,
    isNetworkTethering,
    isPowered,
    wiFiEnabled,
    setWiFiEnabled,
    wifiManagerQuery,
    enabled,
    connected,
    setPowered,
    setEnabled,
    CFPreferencesSetAppValue,
    CFPreferencesAppSynchronize,
    locationServicesEnabled,
    setLocationServicesEnabled,
    CTCellularDataPlanGetIsEnabled,
    CTCellularDataPlanSetIsEnabled,
    CTRegistrationGetCellularDataIsEnabled,
    CTRegistrationGetCurrentMaxAllowedDataRate,
    CTRegistrationSetMaxAllowedDataRate,
    CTRegistrationCopySupportedDataRates,
    CTServerConnectionCreate,
    allApplications,
    process,
    accessibilityFrontMostApplication,
    activate,
    launch,
    resumeToQuit,
    kill,
    leafIconForIdentifier,
    iconForDisplayIdentifier,
    uname,
    userInterfaceIdiom,
    kCFCoreFoundationVersionNumber,
    GSSystemHasCapability,
    GSSystemCopyCapability,
    MGGetBoolAnswer,
    dlopen,
    dlsym,
    dlclose,
    // The library's reads of the clock. A trace has no line for them: they are part only of the
    // stream from which a night in real time is replayed.
    time,
    date,
};

struct NamedOperation {
    Operation operation;
    std::string_view name; ///< The name on the phone: a function, or a selector with its colons.
};

/// In the order of the enumerators.
inline constexpr std::array operationNames{
    NamedOperation{Operation::NSLog, "NSLog"},
    NamedOperation{Operation::bundleIdentifier, "bundleIdentifier"},
    NamedOperation{Operation::objc_getClass, "objc_getClass"},
    NamedOperation{Operation::MSHookMessageEx, "MSHookMessageEx"},
    NamedOperation{Operation::IORegisterForSystemPower, "IORegisterForSystemPower"},
    NamedOperation{Operation::CFRunLoopAddSource, "CFRunLoopAddSource"},
    NamedOperation{Operation::IOAllowPowerChange, "IOAllowPowerChange"},
    NamedOperation{Operation::IOCancelPowerChange, "IOCancelPowerChange"},
    NamedOperation{Operation::notify_register_dispatch, "notify_register_dispatch"},
    NamedOperation{Operation::notify_post, "notify_post"},
    NamedOperation{Operation::postNotification, "postNotificationName:object:userInfo:"},
    NamedOperation{Operation::NSThreadStart, "NSThread start"},
    NamedOperation{Operation::performSelectorOnMainThread,
                   "performSelectorOnMainThread:withObject:waitUntilDone:"},
    NamedOperation{Operation::sleep, "sleep"},
    NamedOperation{Operation::startAccelerometerUpdates, "startAccelerometerUpdates"},
    NamedOperation{Operation::stopAccelerometerUpdates, "stopAccelerometerUpdates"},
    NamedOperation{Operation::setAccelerometerUpdateInterval, "setAccelerometerUpdateInterval:"},
    NamedOperation{Operation::deviceMotion, "deviceMotion"},
    NamedOperation{Operation::accelerometerData, "accelerometerData"},
    NamedOperation{Operation::AudioServicesCreateSystemSoundID, "AudioServicesCreateSystemSoundID"},
    NamedOperation{Operation::AudioServicesPlaySystemSound, "AudioServicesPlaySystemSound"},
    NamedOperation{Operation::AudioServicesDisposeSystemSoundID,
                   "AudioServicesDisposeSystemSoundID"},
    NamedOperation{Operation::fileExistsAtPath, "fileExistsAtPath:"},
    NamedOperation{Operation::initWithContentsOfFile, "initWithContentsOfFile:"},
    NamedOperation{Operation::writeToFileAtomically, "writeToFile:atomically:"},
    NamedOperation{Operation::writeToFileInPlace, "writeToFile:"},
    NamedOperation{Operation::propertyListFromData, "propertyListFromData:"},
    NamedOperation{Operation::CPScheduleWakeAtDateWithIdentifier,
                   "CPScheduleWakeAtDateWithIdentifier"},
    NamedOperation{Operation::CPCancelWakeAtDateWithIdentifier, "CPCancelWakeAtDateWithIdentifier"},
    NamedOperation{Operation::isOnAC, "isOnAC"},
    NamedOperation{Operation::sharedTelephonyManager, "sharedTelephonyManager"},
    NamedOperation{Operation::isInAirplaneMode, "isInAirplaneMode"},
    NamedOperation{Operation::setIsInAirplaneMode, "setIsInAirplaneMode:"},
    NamedOperation{Operation::updateAirplaneMode, "updateAirplaneMode"},
    NamedOperation{Operation::inCall, "inCall"},
    NamedOperation{Operation::outgoingCallExists, "outgoingCallExists"},
    NamedOperation{Operation::incomingCallExists, "incomingCallExists"},
    NamedOperation{Operation::activeCallExists, "activeCallExists"},
    NamedOperation{Operation::isNetworkTethering, "isNetworkTethering"},
    NamedOperation{Operation::isPowered, "isPowered"},
    NamedOperation{Operation::wiFiEnabled, "wiFiEnabled"},
    NamedOperation{Operation::setWiFiEnabled, "setWiFiEnabled:"},
    NamedOperation{Operation::wifiManagerQuery, "wifiManagerQuery"},
    NamedOperation{Operation::enabled, "enabled"},
    NamedOperation{Operation::connected, "connected"},
    NamedOperation{Operation::setPowered, "setPowered:"},
    NamedOperation{Operation::setEnabled, "setEnabled:"},
    NamedOperation{Operation::CFPreferencesSetAppValue, "CFPreferencesSetAppValue"},
    NamedOperation{Operation::CFPreferencesAppSynchronize, "CFPreferencesAppSynchronize"},
    NamedOperation{Operation::locationServicesEnabled, "locationServicesEnabled"},
    NamedOperation{Operation::setLocationServicesEnabled, "setLocationServicesEnabled:"},
    NamedOperation{Operation::CTCellularDataPlanGetIsEnabled, "CTCellularDataPlanGetIsEnabled"},
    NamedOperation{Operation::CTCellularDataPlanSetIsEnabled, "CTCellularDataPlanSetIsEnabled"},
    NamedOperation{Operation::CTRegistrationGetCellularDataIsEnabled,
                   "CTRegistrationGetCellularDataIsEnabled"},
    NamedOperation{Operation::CTRegistrationGetCurrentMaxAllowedDataRate,
                   "CTRegistrationGetCurrentMaxAllowedDataRate"},
    NamedOperation{Operation::CTRegistrationSetMaxAllowedDataRate,
                   "CTRegistrationSetMaxAllowedDataRate"},
    NamedOperation{Operation::CTRegistrationCopySupportedDataRates,
                   "CTRegistrationCopySupportedDataRates"},
    NamedOperation{Operation::CTServerConnectionCreate, "_CTServerConnectionCreate"},
    NamedOperation{Operation::allApplications, "allApplications"},
    NamedOperation{Operation::process, "process"},
    NamedOperation{Operation::accessibilityFrontMostApplication,
                   "_accessibilityFrontMostApplication"},
    NamedOperation{Operation::activate, "activate"},
    NamedOperation{Operation::launch, "launch"},
    NamedOperation{Operation::resumeToQuit, "resumeToQuit"},
    NamedOperation{Operation::kill, "kill"},
    NamedOperation{Operation::leafIconForIdentifier, "leafIconForIdentifier:"},
    NamedOperation{Operation::iconForDisplayIdentifier, "iconForDisplayIdentifier:"},
    NamedOperation{Operation::uname, "uname"},
    NamedOperation{Operation::userInterfaceIdiom, "userInterfaceIdiom"},
    NamedOperation{Operation::kCFCoreFoundationVersionNumber, "kCFCoreFoundationVersionNumber"},
    NamedOperation{Operation::GSSystemHasCapability, "GSSystemHasCapability"},
    NamedOperation{Operation::GSSystemCopyCapability, "GSSystemCopyCapability"},
    NamedOperation{Operation::MGGetBoolAnswer, "MGGetBoolAnswer"},
    NamedOperation{Operation::dlopen, "dlopen"},
    NamedOperation{Operation::dlsym, "dlsym"},
    NamedOperation{Operation::dlclose, "dlclose"},
    NamedOperation{Operation::time, "time"},
    NamedOperation{Operation::date, "date"},
};
constexpr bool namesAreInOrder() {
    for (std::size_t i = 0; i < operationNames.size(); ++i)
        if (operationNames[i].operation != static_cast<Operation>(i))
            return false;
    return operationNames.back().operation == Operation::date;
}
static_assert(namesAreInOrder());

constexpr std::string_view nameOf(Operation operation) {
    return operationNames[static_cast<std::size_t>(operation)].name;
}

/// Absent if no operation has this name.
constexpr std::optional<Operation> operationNamed(std::string_view name) {
    const auto* const found = std::find_if(operationNames.begin(), operationNames.end(),
                                           [&](const auto& named) { return named.name == name; });
    if (found == operationNames.end())
        return std::nullopt;
    return found->operation;
}

} // namespace noctara
