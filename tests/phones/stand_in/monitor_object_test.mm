/// The monitor as an object that other code in SpringBoard sends messages to. This process is a
/// phone of its own, with the library injected.
#include "input/temporary_folder.h"
#include "phones/stand_in/host/injected_library.h"
#include "phones/stand_in/host/phone_on_virtual_clock.h"
#include "phones/stand_in/host/springboard.h"
#include "phones/stand_in/host/watched_foundation.h"

#import <Foundation/Foundation.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <dlfcn.h>
#include <objc/runtime.h>

namespace noctara {

namespace {

class OperationsSeen : public PhoneObserver {
public:
    void called(const Call& call) override { operations.push_back(call.operation); }
    void happens(const Happening&) override {}

    std::vector<Operation> operations;
};

/// The object that the library exports; nil before there is one.
NSObject* monitor() {
    void* const library = dlopen(NOCTARA_LIBRARY, RTLD_NOW | RTLD_NOLOAD);
    return *static_cast<NSObject**>(dlsym(library, "NoctaraInstance"));
}

TEST(TheMonitor, is_an_object_that_ends_its_thread_when_it_is_sent_stop) {
    using testing::Contains;
    using testing::Not;
    const TemporaryFolder folder;
    Scenario scenario;
    scenario.end.secondsSince1970 = scenario.start.secondsSince1970 + 3600;
    setUpFoundation("UTC");
    watchFoundation();
    static auto& phone = *new PhoneOnVirtualClock(scenario, folder.path);
    OperationsSeen seen;
    phone.observe(seen);
    springBoard::begin();
    injectedLibrary::inject(NOCTARA_LIBRARY);
    EXPECT_EQ(monitor(), nil);
    injectedLibrary::stopMonitor();

    springBoard::didFinishLaunching();
    ASSERT_NE(monitor(), nil);
    EXPECT_STREQ(object_getClassName(monitor()), "NoctaraThread");

    phone.happens(MonitorStop{});
    ASSERT_TRUE(phone.playToTheEnd());
    EXPECT_THAT(seen.operations, Contains(Operation::AudioServicesDisposeSystemSoundID).Times(2));
    EXPECT_THAT(seen.operations, Not(Contains(Operation::sleep)));
    EXPECT_NE(monitor(), nil) << "it stays when its thread has ended";
}

} // namespace

} // namespace noctara
