#import <Foundation/Foundation.h>

namespace {

[[gnu::constructor]] void forget() {
    [[NSThread alloc] init];
    ::operator new(100);
}

} // namespace
