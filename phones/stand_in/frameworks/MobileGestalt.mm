#include "phones/springboard/property_list_values.h"
#include "phones/stand_in/stand_in_phone.h"
#include "platform/capabilities.h"

#import <CoreFoundation/CoreFoundation.h>

using noctara::PhoneCall;

extern "C" int MGGetBoolAnswer(CFStringRef name) {
    PhoneCall phone;
    return phone ? phone->capabilities.callMGGetBoolAnswer(
                       reinterpret_cast<noctara::FunctionRef>(&MGGetBoolAnswer),
                       noctara::textOf((NSString*)name))
                 : 0;
}
