#import <Foundation/Foundation.h>

#include <new>

namespace {

[[gnu::constructor]] void passFreed() {
    @autoreleasepool {
        auto* const text = static_cast<volatile char*>(::operator new(1));
        text[0] = 0;
        ::operator delete(const_cast<char*>(text));
        [NSString stringWithUTF8String:const_cast<char*>(text)];
    }
}

} // namespace
