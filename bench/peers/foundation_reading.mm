#include "bench/peers/peers.h"

#import <Foundation/Foundation.h>

namespace noctara {

std::size_t readWithFoundation(const char* file) {
    NSAutoreleasePool* const pool = [NSAutoreleasePool new];
    const std::size_t keys =
        [[NSDictionary dictionaryWithContentsOfFile:[NSString stringWithUTF8String:file]] count];
    [pool release];
    return keys;
}

} // namespace noctara
