/// The types of the Objective-C runtime.
#pragma once

typedef struct objc_class* Class;
typedef struct objc_object {
    Class isa;
} * id;
typedef struct objc_selector* SEL;
typedef void (*IMP)(void);

// A call extends a BOOL as its type demands, so the type is part of the binary interface.
#if __OBJC_BOOL_IS_BOOL
typedef bool BOOL;
#else
typedef signed char BOOL;
#endif

#define YES __objc_yes
#define NO __objc_no
#define nil nullptr
