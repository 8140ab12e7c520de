/// The methods that the library adds to the device object, called by other code in SpringBoard.
/// This process is a stand-in phone that loads the library.
#include "input/temporary_folder.h"
#include "phones/springboard/property_list_values.h"
#include "phones/stand_in/host/injected_library.h"
#include "phones/stand_in/host/phone_on_virtual_clock.h"
#include "phones/stand_in/host/watched_foundation.h"

#import <UIKit/UIKit.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

@interface UIDevice (MethodsOfTheLibrary)
- (BOOL)supportsCapability:(NSString*)name;
- (id)fetchCapability:(NSString*)name;
- (NSMutableArray*)capabilityArray;
@end

namespace noctara {

namespace {

/// A process has one phone and one library.
void injectOnce() {
    static const bool injected = [] {
        Scenario scenario;
        scenario.phone.machine = "iPhone5,1";
        scenario.phone.capabilities = {"telephony", "gps", "no-capability-that-is-known"};
        static const TemporaryFolder folder;
        setUpFoundation("UTC");
        watchFoundation();
        static auto& phone = *new PhoneOnVirtualClock(scenario, folder.path);
        static_cast<void>(phone);
        injectedLibrary::inject(NOCTARA_LIBRARY);
        return true;
    }();
    static_cast<void>(injected);
}

class TheDevice : public testing::Test {
protected:
    TheDevice() { injectOnce(); }
    ~TheDevice() override { [pool release]; }

    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    UIDevice* const device = [UIDevice currentDevice];
};

TEST_F(TheDevice, says_which_capabilities_it_supports) {
    EXPECT_TRUE([device supportsCapability:@"gps"]);
    EXPECT_FALSE([device supportsCapability:@"wifi"]);
}

TEST_F(TheDevice, hands_out_the_value_of_a_capability) {
    EXPECT_EQ(textOf([device fetchCapability:@"marketing-name"]), "iPhone 5");
    EXPECT_EQ([device fetchCapability:@"gps"], [NSNumber numberWithBool:YES]);
    EXPECT_EQ([device fetchCapability:@"wifi"], [NSNumber numberWithBool:NO]);
}

TEST_F(TheDevice, lists_its_capabilities_in_an_array_that_can_be_changed) {
    NSMutableArray* names = [device capabilityArray];
    EXPECT_EQ([names count], 2U);
    EXPECT_TRUE([names containsObject:@"gps"]);
    EXPECT_TRUE([names containsObject:@"telephony"]);
    [names addObject:@"one more"];
    EXPECT_EQ([[device capabilityArray] count], 2U);
}

} // namespace

} // namespace noctara
