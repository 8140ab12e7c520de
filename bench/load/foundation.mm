/// A library with one class, for the cost of the Objective-C runtime and Foundation. It can ask the
/// main bundle for its identifier, as every library of this kind does first.
#import <Foundation/Foundation.h>

@interface NoctaraLoadProbe : NSObject
@end

@implementation NoctaraLoadProbe

+ (bool)isInSpringBoard {
    @autoreleasepool {
        return [[[NSBundle mainBundle] bundleIdentifier] isEqualToString:@"com.apple.springboard"];
    }
}

@end

bool isInSpringBoard() {
    return [NoctaraLoadProbe isInSpringBoard];
}
