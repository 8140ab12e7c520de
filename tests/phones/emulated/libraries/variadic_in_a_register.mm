#import <Foundation/Foundation.h>

extern "C" void logOne(NSString* format, id argument) __asm("_NSLog");

namespace {

[[gnu::constructor]] void logInARegister() {
    logOne(@"%@", @"text");
}

} // namespace
