/// The function of the method-hooking loader, implemented with the real Objective-C runtime.
#include "phones/springboard/private_functions.h"
#include "phones/stand_in/stand_in_phone.h"

#include <objc/runtime.h>

using noctara::CallValue;
using noctara::PhoneCall;

void MSHookMessageEx(Class hooked, SEL selector, IMP replacement, IMP* previous) {
    if (PhoneCall phone; phone)
        phone->recorder.call(
            noctara::Operation::MSHookMessageEx,
            {hooked ? CallValue(class_getName(hooked)) : CallValue(), sel_getName(selector)});
    const Method method = hooked ? class_getInstanceMethod(hooked, selector) : nullptr;
    if (!method)
        return;
    *previous = method_getImplementation(method);
    // An inherited method stays as it is for the other classes that have it.
    if (!class_addMethod(hooked, selector, replacement, method_getTypeEncoding(method)))
        method_setImplementation(method, replacement);
}
