/// What the library hands to the phone's functions, and what it makes of their failures. This
/// program defines some of those functions itself, and is in no SpringBoard: it has none of its
/// classes.
#include "host/host.h"
#include "input/temporary_folder.h"
#include "phones/springboard/private_functions.h"
#include "phones/springboard/services.h"
#include "platform/capabilities.h"
#include "platform/cellular.h"
#include "platform/files.h"
#include "platform/notifications.h"
#include "platform/system_power.h"

#include <dlfcn.h>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

/// What the phone's functions were given, and what they are to answer.
struct {
    CFAllocatorRef allocator;
    CTServerConnectionCallback callback;
    void* context;
    CTServerConnectionRef connection;
    CFTypeRef rates;
    io_connect_t powerConnection;
    int sourcesAdded;
    int libraryMode;
    std::vector<std::string> hooked;
} phone;

char anything;

} // namespace

CTServerConnectionRef _CTServerConnectionCreate(CFAllocatorRef allocator,
                                                CTServerConnectionCallback callback,
                                                void* context) {
    phone.allocator = allocator;
    phone.callback = callback;
    phone.context = context;
    return phone.connection;
}

CFTypeRef CTRegistrationCopySupportedDataRates(void) {
    return phone.rates;
}

io_connect_t IORegisterForSystemPower(void*, IONotificationPortRef* port, IOServiceInterestCallback,
                                      io_object_t*) {
    *port = reinterpret_cast<IONotificationPortRef>(&anything);
    return phone.powerConnection;
}

CFRunLoopSourceRef IONotificationPortGetRunLoopSource(IONotificationPortRef port) {
    return reinterpret_cast<CFRunLoopSourceRef>(port);
}

void CFRunLoopAddSource(CFRunLoopRef, CFRunLoopSourceRef, CFRunLoopMode) {
    ++phone.sourcesAdded;
}

void MSHookMessageEx(Class hooked, SEL selector, IMP, IMP*) {
    phone.hooked.push_back(std::string(hooked ? "a class " : "no class ") + sel_getName(selector));
}

extern "C" [[gnu::visibility("default")]] void* dlopen(const char* path, int mode) noexcept {
    phone.libraryMode = mode;
    return reinterpret_cast<decltype(&dlopen)>(dlsym(RTLD_NEXT, "dlopen"))(path, mode);
}

/// Keeps the last notification that it has got. The test releases it.
@interface Listener : NSObject {
@public
    NSNotification* heard;
}
- (void)hear:(NSNotification*)notification;
@end

@implementation Listener

- (void)hear:(NSNotification*)notification {
    heard = [notification retain];
}

@end

namespace noctara {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class ThePhonesFunctions : public testing::Test {
protected:
    ThePhonesFunctions() { phone = {}; }
    ~ThePhonesFunctions() override { [pool release]; }

    /// The lines that `work` writes to the system log.
    template <typename Work>
    static std::string logOf(Work work) {
        testing::internal::CaptureStderr();
        work();
        return testing::internal::GetCapturedStderr();
    }

    const Platform& platform = *processPlatform;
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
};

// Telephony.

TEST_F(ThePhonesFunctions, open_a_server_connection_with_the_default_allocator_and_no_context) {
    phone.allocator = reinterpret_cast<CFAllocatorRef>(&anything);
    phone.context = &anything;
    EXPECT_EQ(platform.cellular->createServerConnection(callbackCTServerConnectionCreate), nullptr);
    EXPECT_EQ(phone.allocator, kCFAllocatorDefault);
    EXPECT_EQ(phone.callback, &callbackCTServerConnectionCreate);
    EXPECT_EQ(phone.context, nullptr);
}

TEST_F(ThePhonesFunctions, get_each_server_connection_back_once) {
    NSObject* connection = [[NSObject alloc] init];
    [connection retain];
    phone.connection = reinterpret_cast<CTServerConnectionRef>(connection);
    RadiosLib radios(platform);
    EXPECT_EQ([connection retainCount], 1U);
    [connection release];
}

TEST_F(ThePhonesFunctions, get_the_supported_rates_back_once) {
    NSArray* rates = [[NSArray alloc]
        initWithObjects:(id)kCTRegistrationDataRate2G, (id)kCTRegistrationDataRate4G, nil];
    phone.rates = [rates retain];
    EXPECT_THAT(
        platform.cellular->supportedDataRates(),
        ElementsAre(DataRate::kCTRegistrationDataRate2G, DataRate::kCTRegistrationDataRate4G));
    EXPECT_EQ([rates retainCount], 1U);
    [rates release];
}

TEST_F(ThePhonesFunctions, may_know_no_supported_rates) {
    EXPECT_THAT(platform.cellular->supportedDataRates(), IsEmpty());
}

// Libraries.

TEST_F(ThePhonesFunctions, open_a_library_lazily) {
    const LibraryRef library = platform.libraries->open("libm.so.6");
    EXPECT_NE(library, nullptr);
    EXPECT_EQ(phone.libraryMode, RTLD_LAZY);
    platform.libraries->close(library);
}

TEST_F(ThePhonesFunctions, find_nothing_in_a_library_that_is_missing) {
    const LibraryRef library = platform.libraries->open("/no/such/library");
    EXPECT_EQ(library, nullptr);
    EXPECT_EQ(platform.libraries->find(library, "malloc"), nullptr);
    platform.libraries->close(library);
}

// Notifications.

TEST_F(ThePhonesFunctions, announce_a_change_in_the_process_for_no_object) {
    Listener* const listener = [[Listener alloc] init];
    NSNotificationCenter* const center = [NSNotificationCenter defaultCenter];
    [center addObserver:listener
               selector:@selector(hear:)
                   name:@"PSCellDataChangedNotification"
                 object:nil];
    platform.notifications->postInProcess("PSCellDataChangedNotification", {{"DataEnabled", true}});
    [center removeObserver:listener];
    NSNotification* const heard = listener->heard;
    [listener release];
    ASSERT_NE(heard, nil);
    EXPECT_EQ([heard object], nil);
    EXPECT_EQ([[heard userInfo] count], 1U);
    EXPECT_TRUE([[[heard userInfo] objectForKey:@"DataEnabled"] boolValue]);
    [heard release];
}

// Power.

TEST_F(ThePhonesFunctions, may_refuse_to_register_for_power_messages) {
    root_port = 0;
    registerPowerListener();
    EXPECT_EQ(root_port, 0U);
    EXPECT_EQ(phone.sourcesAdded, 0);

    phone.powerConnection = 77;
    registerPowerListener();
    EXPECT_EQ(root_port, 77U);
    EXPECT_EQ(phone.sourcesAdded, 1);
    root_port = 0;
}

// Classes that are missing.

TEST_F(ThePhonesFunctions, hook_no_class_where_SpringBoards_are_missing) {
    struct InSpringBoard final : HostProcess {
        std::string bundleIdentifier() override { return "com.apple.springboard"; }
        ClassRef findClass(const char* name) override { return adapter.findClass(name); }
        void hookMessage(ClassRef hooked, const char* selector, Implementation replacement,
                         Implementation& previous) override {
            adapter.hookMessage(hooked, selector, replacement, previous);
        }
        HostProcess& adapter = springBoardProcess();
    } springBoard;
    Platform altered = platform;
    altered.process = &springBoard;
    processPlatform = &altered;
    NoctaraInitialize();
    processPlatform = &platform;
    EXPECT_THAT(phone.hooked,
                ElementsAre("no class applicationDidFinishLaunching:", "no class ACPowerChanged"));
    EXPECT_EQ(orig_SpringBoard_applicationDidFinishLaunching, nullptr);
    EXPECT_EQ(orig_SBUIController_ACPowerChanged, nullptr);
}

TEST_F(ThePhonesFunctions, leave_a_monitor_without_the_charger_where_its_class_is_missing) {
    static NoctaraThread* monitor = nullptr; // never destroyed: the phone keeps calling it
    EXPECT_THAT(logOf([&] { monitor = new NoctaraThread(platform); }),
                HasSubstr("Noctara : Class SBUIController not found"));
    EXPECT_FALSE(monitor->ACState);
}

// Files.

TEST_F(ThePhonesFunctions, give_a_reason_why_a_property_list_cannot_be_read) {
    const TemporaryFolder folder;
    const std::string missing = folder.path / "missing.plist";
    const std::string empty = folder.path / "empty.plist";
    const std::string damaged = folder.path / "damaged.plist";
    std::ofstream(empty).flush();
    std::ofstream(damaged) << "<plist><dict><key>wake";
    for (const auto& path : {missing, empty, damaged}) {
        std::string error;
        EXPECT_FALSE(platform.files->parse(path, error)) << path;
        EXPECT_NE(error, "") << path;
        EXPECT_EQ(platform.files->readDictionary(path), std::nullopt);
    }
}

} // namespace

} // namespace noctara
