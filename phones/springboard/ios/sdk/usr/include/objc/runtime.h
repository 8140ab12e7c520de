/// Classes and selectors by name.
#pragma once

#include <objc/objc.h>

extern "C" {

/// Null if there is no such class.
Class objc_getClass(const char* name);
SEL sel_registerName(const char* name);
const char* sel_getName(SEL selector);

} // extern "C"
