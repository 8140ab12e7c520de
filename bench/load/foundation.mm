/// A library with one class: what the Objective-C runtime and Foundation cost whoever loads them,
/// with the question that every such library of the phone's begins with.
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
