#import <Foundation/Foundation.h>

@interface NSString (Misspelt)
- (NSUInteger)lenght;
@end

namespace {

[[gnu::constructor]] void measure() {
    NSLog(@"%d", static_cast<int>([@"text" lenght]));
}

} // namespace
