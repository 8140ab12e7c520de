#import <Foundation/Foundation.h>

namespace {

[[gnu::noinline]] void releaseWhatTheArrayHas(NSMutableArray* array) {
    NSThread* thread = [[NSThread alloc] init];
    [array addObject:thread];
    [thread release];
    [thread release];
}

[[gnu::constructor]] void load() {
    @autoreleasepool {
        NSMutableArray* array = [NSMutableArray arrayWithCapacity:1];
        releaseWhatTheArrayHas(array);
        for (NSThread* one in array)
            NSLog(@"%@", [one description]);
    }
}

} // namespace
