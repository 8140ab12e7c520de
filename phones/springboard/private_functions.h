/// Functions of the phone that no public header declares, as far as they are used here.
///
/// A weak import is null on a system that lacks it, and the library loads nevertheless. Call such a
/// function through `callIfPresent`, and read such a constant through `valueIfPresent`.
#pragma once

#import <CoreFoundation/CoreFoundation.h>
#import <Foundation/Foundation.h>

#include <cstdint>
#include <type_traits>

extern "C" {

// The method-hooking loader.

/// Replaces a method and stores the implementation that it had in `previous`.
void MSHookMessageEx(Class hooked, SEL selector, IMP replacement, IMP* previous);

// IOKit.

using io_object_t = std::uint32_t;
using io_connect_t = io_object_t;
using io_service_t = io_object_t;
using IONotificationPortRef = struct IONotificationPort*;
using IOServiceInterestCallback = void (*)(void* refcon, io_service_t service,
                                           std::uint32_t messageType, void* messageArgument);

/// 0 on failure.
io_connect_t IORegisterForSystemPower(void* refcon, IONotificationPortRef* port,
                                      IOServiceInterestCallback callback, io_object_t* notifier);
CFRunLoopSourceRef IONotificationPortGetRunLoopSource(IONotificationPortRef port);
int IOAllowPowerChange(io_connect_t connection, long notification);
int IOCancelPowerChange(io_connect_t connection, long notification);

// AppSupport.

[[clang::weak_import]] void CPScheduleWakeAtDateWithIdentifier(CFDateRef date,
                                                               CFStringRef identifier);
[[clang::weak_import]] void CPCancelWakeAtDateWithIdentifier(CFDateRef date,
                                                             CFStringRef identifier);

// CoreTelephony. Rates are compared by address.

using CTServerConnectionRef = struct CTServerConnection*;
using CTServerConnectionCallback = void (*)();

[[clang::weak_import]] extern const CFStringRef kCTRegistrationDataRate2G;
[[clang::weak_import]] extern const CFStringRef kCTRegistrationDataRate3G;
[[clang::weak_import]] extern const CFStringRef kCTRegistrationDataRate4G;

[[clang::weak_import]] BOOL CTCellularDataPlanGetIsEnabled(void);
[[clang::weak_import]] void CTCellularDataPlanSetIsEnabled(BOOL enabled);
[[clang::weak_import]] BOOL CTRegistrationGetCellularDataIsEnabled(void);
[[clang::weak_import]] CFStringRef CTRegistrationGetCurrentMaxAllowedDataRate(void);
[[clang::weak_import]] BOOL CTRegistrationSetMaxAllowedDataRate(CFStringRef rate);

/// To be released by the caller; a collection that answers `containsObject:`.
[[clang::weak_import]] CFTypeRef CTRegistrationCopySupportedDataRates(void);

/// To be released by the caller; null when the telephony server cannot be reached.
[[clang::weak_import]] CTServerConnectionRef
_CTServerConnectionCreate(CFAllocatorRef allocator, CTServerConnectionCallback callback,
                          void* context);

// GraphicsServices. A copied value is to be released by the caller.

[[clang::weak_import]] int GSSystemHasCapability(CFStringRef name);
CFTypeRef GSSystemCopyCapability(CFStringRef name);

} // extern "C"

namespace noctara {

/// Calls a function of the phone. Null, false or 0 if the system lacks it.
template <typename Result, typename... Parameters>
Result callIfPresent(Result (*function)(Parameters...),
                     std::type_identity_t<Parameters>... arguments) {
    return function ? function(arguments...) : Result();
}

/// Null if the system lacks the constant.
template <typename Value>
Value valueIfPresent(const Value* constant) {
    return constant ? *constant : nullptr;
}

} // namespace noctara
