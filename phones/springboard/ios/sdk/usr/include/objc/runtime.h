/// Classes and selectors by name.
#pragma once

#include <objc/objc.h>

extern "C" {

/// Null if there is no such class.
Class objc_getClass(const char* name);
SEL sel_registerName(const char* name);
/// NO if the class itself has a method for the selector already.
BOOL class_addMethod(Class changed, SEL selector, IMP implementation, const char* types);

} // extern "C"
