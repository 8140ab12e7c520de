/// Functions of the phone that no public header declares, as far as they are used here.
#pragma once

#import <CoreFoundation/CoreFoundation.h>
#import <Foundation/Foundation.h>

#include <cstdint>

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

void CPScheduleWakeAtDateWithIdentifier(CFDateRef date, CFStringRef identifier);
void CPCancelWakeAtDateWithIdentifier(CFDateRef date, CFStringRef identifier);

// CoreTelephony. Rates are compared by address.

using CTServerConnectionRef = struct CTServerConnection*;
using CTServerConnectionCallback = void (*)();

extern const CFStringRef kCTRegistrationDataRate2G;
extern const CFStringRef kCTRegistrationDataRate3G;
extern const CFStringRef kCTRegistrationDataRate4G;

BOOL CTCellularDataPlanGetIsEnabled(void);
void CTCellularDataPlanSetIsEnabled(BOOL enabled);
BOOL CTRegistrationGetCellularDataIsEnabled(void);
CFStringRef CTRegistrationGetCurrentMaxAllowedDataRate(void);
BOOL CTRegistrationSetMaxAllowedDataRate(CFStringRef rate);

/// To be released by the caller; a collection that answers `containsObject:`.
CFTypeRef CTRegistrationCopySupportedDataRates(void);

/// To be released by the caller; null when the telephony server cannot be reached.
CTServerConnectionRef _CTServerConnectionCreate(CFAllocatorRef allocator,
                                                CTServerConnectionCallback callback, void* context);

// GraphicsServices. A copied value is to be released by the caller.

int GSSystemHasCapability(CFStringRef name);
CFTypeRef GSSystemCopyCapability(CFStringRef name);

} // extern "C"
