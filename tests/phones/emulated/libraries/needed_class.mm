#import <Foundation/Foundation.h>

@interface BluetoothManager : NSObject
+ (BluetoothManager*)sharedInstance;
@end

namespace {

[[gnu::constructor]] void ask() {
    [BluetoothManager sharedInstance];
}

} // namespace
