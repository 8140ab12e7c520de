#include "phones/springboard/private_classes.h"
#include "phones/springboard/private_functions.h"

#import <CoreMotion/CoreMotion.h>
#include <notify.h>
#include <sys/utsname.h>
#include <unistd.h>

@interface Waiter : NSObject
- (void)run;
@end

@implementation Waiter
- (void)run {
    @autoreleasepool {
        for (int i = 0; i < 3; ++i) {
            @autoreleasepool {
                NSLog(@"%@", [NSDate date] ? @"waits" : @"has no date");
            }
            sleep(1);
        }
    }
}
@end

namespace {

int changes = 0;

void askThePhone() {
    utsname names;
    uname(&names);
    NSLog(@"%@", [NSString stringWithUTF8String:names.machine]);
    if (BluetoothManager* manager = [BluetoothManager sharedInstance])
        [manager setEnabled:![manager enabled]];
    using noctara::callIfPresent;
    callIfPresent(CTCellularDataPlanSetIsEnabled, callIfPresent(CTCellularDataPlanGetIsEnabled));
    CMMotionManager* motion = [[CMMotionManager alloc] init];
    [motion startAccelerometerUpdates];
    [motion release];
}

[[gnu::constructor]] void load() {
    @autoreleasepool {
        askThePhone();
        int token = 0;
        int factor = 3;
        notify_register_dispatch("com.quorbit.Noctara.preferences-changed", &token,
                                 dispatch_get_main_queue(), ^(int) {
                                   changes += factor;
                                   NSLog(@"%d changed", changes);
                                 });
        Waiter* waiter = [[[Waiter alloc] init] autorelease];
        NSThread* thread = [[[NSThread alloc] initWithTarget:waiter
                                                    selector:@selector(run)
                                                      object:nil] autorelease];
        [thread start];
    }
}

} // namespace
