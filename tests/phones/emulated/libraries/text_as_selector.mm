#import <Foundation/Foundation.h>

namespace {

[[gnu::constructor]] void askWithText() {
    NSLog(@"%d", [@"text" respondsToSelector:reinterpret_cast<SEL>(const_cast<char*>("length"))]);
}

} // namespace
