#include "phones/springboard/private_functions.h"
#include "phones/springboard/property_list_values.h"
#include "phones/stand_in/stand_in_phone.h"
#include "platform/capabilities.h"

using noctara::PhoneCall;

int GSSystemHasCapability(CFStringRef name) {
    PhoneCall phone;
    return phone ? phone->capabilities.linkedGSSystemHasCapability(noctara::textOf((NSString*)name))
                 : 0;
}

CFTypeRef GSSystemCopyCapability(CFStringRef name) {
    PhoneCall phone;
    if (!phone)
        return nullptr;
    const auto value = phone->capabilities.callGSSystemCopyCapability(
        reinterpret_cast<noctara::FunctionRef>(&GSSystemCopyCapability),
        noctara::textOf((NSString*)name));
    return value ? [noctara::objectOf(*value) retain] : nil;
}
