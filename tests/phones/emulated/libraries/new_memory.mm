#import <Foundation/Foundation.h>

#include <new>

namespace {

[[gnu::constructor]] void readNewMemory() {
    auto* const number = static_cast<volatile int*>(::operator new(sizeof(int)));
    NSLog(@"%d", *number == 0 ? 0 : 1);
    ::operator delete(const_cast<int*>(number));
}

} // namespace
