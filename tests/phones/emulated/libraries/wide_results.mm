#import <Foundation/Foundation.h>

extern "C" {
BOOL asFlag() __asm("_CTCellularDataPlanGetIsEnabled");
int asInt() __asm("_CTCellularDataPlanGetIsEnabled");
long asLong() __asm("_CTCellularDataPlanGetIsEnabled");
long ofNothing(BOOL) __asm("_CTCellularDataPlanSetIsEnabled");
}

namespace {

[[gnu::constructor]] void readResults() {
    @autoreleasepool {
        NSLog(@"BOOL %d, int %d, long %d", asFlag() ? 1 : 0, asInt() != 0 ? 1 : 0,
              asLong() != 0 ? 1 : 0);
        NSLog(@"no result %d", ofNothing(NO) != 0 ? 1 : 0);
    }
}

} // namespace
