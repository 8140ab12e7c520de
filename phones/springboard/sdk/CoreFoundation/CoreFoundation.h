/// CoreFoundation, as far as it is used here. Its references are Foundation's objects.
#pragma once

#import <Foundation/Foundation.h>

extern "C" {

using CFTypeRef = const void*;
using CFPropertyListRef = CFTypeRef;
using CFAllocatorRef = const struct __CFAllocator*;
using CFStringRef = const struct __CFString*;
using CFURLRef = const struct __CFURL*;
using CFDateRef = const struct __CFDate*;
using CFRunLoopRef = struct __CFRunLoop*;
using CFRunLoopSourceRef = struct __CFRunLoopSource*;
using CFRunLoopMode = CFStringRef;

extern const CFAllocatorRef kCFAllocatorDefault;
extern const double kCFCoreFoundationVersionNumber;
extern const CFRunLoopMode kCFRunLoopCommonModes;

void CFRelease(CFTypeRef object);

CFRunLoopRef CFRunLoopGetCurrent(void);
void CFRunLoopAddSource(CFRunLoopRef runLoop, CFRunLoopSourceRef source, CFRunLoopMode mode);

void CFPreferencesSetAppValue(CFStringRef key, CFPropertyListRef value, CFStringRef domain);
unsigned char CFPreferencesAppSynchronize(CFStringRef domain);

} // extern "C"
