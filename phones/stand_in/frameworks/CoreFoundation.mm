#include "phones/springboard/property_list_values.h"
#include "phones/stand_in/stand_in_phone.h"
#include "platform/preferences.h"
#include "platform/system_power.h"

#import <CoreFoundation/CoreFoundation.h>

using noctara::PhoneCall;

static double versionOfThisPhone() {
    PhoneCall phone;
    return phone ? phone->coreFoundationVersionNumber : 0;
}

extern const double kCFCoreFoundationVersionNumber = versionOfThisPhone();
extern const CFAllocatorRef kCFAllocatorDefault = nullptr;
extern const CFRunLoopMode kCFRunLoopCommonModes = (CFStringRef) @"kCFRunLoopCommonModes";

void CFRelease(CFTypeRef object) {
    [(id)object release];
}

CFRunLoopRef CFRunLoopGetCurrent(void) {
    return (CFRunLoopRef)[NSRunLoop currentRunLoop];
}

void CFRunLoopAddSource(CFRunLoopRef runLoop, CFRunLoopSourceRef source, CFRunLoopMode mode) {
    // The phone delivers its messages on the main run loop, in every mode.
    if (runLoop != (CFRunLoopRef)[NSRunLoop mainRunLoop] || mode != kCFRunLoopCommonModes)
        return;
    if (PhoneCall phone; phone)
        phone->power.addSource(runLoop, source);
}

void CFPreferencesSetAppValue(CFStringRef key, CFPropertyListRef value, CFStringRef domain) {
    if (PhoneCall phone; phone)
        phone->preferences.setAppValue([(NSString*)key UTF8String], noctara::valueOf((id)value),
                                       [(NSString*)domain UTF8String]);
}

unsigned char CFPreferencesAppSynchronize(CFStringRef domain) {
    if (PhoneCall phone; phone) {
        phone->preferences.appSynchronize([(NSString*)domain UTF8String]);
        return true;
    }
    return false;
}
