#include "phones/springboard/private_functions.h"
#include "phones/springboard/property_list_values.h"
#include "phones/stand_in/stand_in_phone.h"
#include "platform/wake_scheduler.h"

using noctara::PhoneCall;

static noctara::Date dateOf(CFDateRef date) {
    return {[(NSDate*)date timeIntervalSince1970]};
}

void CPScheduleWakeAtDateWithIdentifier(CFDateRef date, CFStringRef identifier) {
    if (PhoneCall phone; phone)
        phone->wakes.schedule(dateOf(date), noctara::textOf((NSString*)identifier));
}

void CPCancelWakeAtDateWithIdentifier(CFDateRef date, CFStringRef identifier) {
    if (PhoneCall phone; phone)
        phone->wakes.cancel(dateOf(date), noctara::textOf((NSString*)identifier));
}
