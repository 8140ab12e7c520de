/// SpringBoard's own classes. Their methods pass every question on to the phone.
#include "phones/stand_in/host/springboard.h"

#include "phones/springboard/private_classes.h"
#include "phones/springboard/property_list_values.h"
#include "phones/stand_in/host/injected_phone.h"

#include <map>

using noctara::OnPhone;

@interface SpringBoard : UIApplication
- (void)applicationDidFinishLaunching:(UIApplication*)application;
@end

@interface SBUIController (Messages)
- (void)ACPowerChanged;
@end

@interface UIDevice (ReportOfTheLibrary)
- (void)scanCapabilities;
@end

static noctara::InjectedPhone& thePhone() {
    return *noctara::injectedPhone;
}

static noctara::ClassRef aClass() {
    return &thePhone();
}

/// Objective-C objects that stand for parts of the phone, one object for each part.
template <typename Object, typename Thing>
class Objects {
public:
    Object* objectOf(Thing* thing) {
        if (!thing)
            return nil;
        Object*& object = objects[thing];
        if (!object) {
            object = [[Object alloc] init];
            things[object] = thing;
        }
        return object;
    }

    Thing* thingOf(Object* object) const { return things.at(object); }

private:
    std::map<Thing*, Object*> objects;
    std::map<Object*, Thing*> things;
};

// Never destroyed: the library uses them as long as the process runs.
static auto& applications = *new Objects<SBApplication, noctara::Application>;
static auto& icons = *new Objects<SBIcon, noctara::Icon>;

@implementation SpringBoard

- (void)applicationDidFinishLaunching:(UIApplication*)application {
}

- (SBApplication*)_accessibilityFrontMostApplication {
    return applications.objectOf(OnPhone(thePhone())->applications.frontMostApplication());
}

@end

@implementation SBUIController

+ (SBUIController*)sharedInstance {
    static SBUIController* shared = [[SBUIController alloc] init];
    return shared;
}

- (void)ACPowerChanged {
}

- (BOOL)isOnAC {
    return OnPhone(thePhone())->power.isOnAC(self);
}

@end

@implementation SBTelephonyManager

+ (SBTelephonyManager*)sharedTelephonyManager {
    static SBTelephonyManager* shared = [[SBTelephonyManager alloc] init];
    return OnPhone(thePhone())->radios.sharedTelephonyManager(aClass()) ? shared : nil;
}

- (BOOL)isInAirplaneMode {
    return OnPhone(thePhone())->radios.isInAirplaneMode();
}

- (void)setIsInAirplaneMode:(BOOL)airplane {
    OnPhone(thePhone())->radios.setIsInAirplaneMode(airplane);
}

- (void)updateAirplaneMode {
    OnPhone(thePhone())->radios.updateAirplaneMode();
}

- (BOOL)inCall {
    return OnPhone(thePhone())->radios.inCall();
}

- (BOOL)outgoingCallExists {
    return OnPhone(thePhone())->radios.outgoingCallExists();
}

- (BOOL)incomingCallExists {
    return OnPhone(thePhone())->radios.incomingCallExists();
}

- (BOOL)activeCallExists {
    return OnPhone(thePhone())->radios.activeCallExists();
}

- (BOOL)isNetworkTethering {
    return OnPhone(thePhone())->radios.isNetworkTethering();
}

@end

@implementation SBWiFiManager

+ (SBWiFiManager*)sharedInstance {
    static SBWiFiManager* shared = [[SBWiFiManager alloc] init];
    return shared;
}

- (BOOL)isPowered {
    return OnPhone(thePhone())->radios.isPowered();
}

- (BOOL)wiFiEnabled {
    return OnPhone(thePhone())->radios.wiFiEnabled();
}

- (void)setWiFiEnabled:(BOOL)enabled {
    OnPhone(thePhone())->radios.setWiFiEnabled(enabled);
}

- (id)wifiManagerQuery {
    const auto answer = OnPhone(thePhone())->radios.perform("wifiManagerQuery");
    return answer ? noctara::objectOf(*answer) : nil;
}

@end

@implementation SBApplication

- (NSString*)displayIdentifier {
    const auto identifier = applications.thingOf(self)->displayIdentifier();
    return identifier ? noctara::stringOf(*identifier) : nil;
}

- (NSString*)displayName {
    const auto name = applications.thingOf(self)->displayName();
    return name ? noctara::stringOf(*name) : nil;
}

- (id)process {
    const OnPhone phone(thePhone());
    return applications.thingOf(self)->hasProcess() ? self : nil;
}

- (void)activate {
    const OnPhone phone(thePhone());
    applications.thingOf(self)->activate();
}

- (void)resumeToQuit {
    const OnPhone phone(thePhone());
    applications.thingOf(self)->resumeToQuit();
}

- (void)kill {
    const OnPhone phone(thePhone());
    applications.thingOf(self)->kill();
}

@end

@implementation SBApplicationController

+ (SBApplicationController*)sharedInstance {
    static SBApplicationController* shared = [[SBApplicationController alloc] init];
    return shared;
}

- (NSArray*)allApplications {
    NSMutableArray* all = [NSMutableArray array];
    OnPhone(thePhone())->applications.allApplications([&](noctara::Application& application) {
        [all addObject:applications.objectOf(&application)];
    });
    return all;
}

- (SBApplication*)springBoard {
    return applications.objectOf(OnPhone(thePhone())->applications.springBoard());
}

@end

@implementation SBIconModel

+ (SBIconModel*)sharedInstance {
    static SBIconModel* shared = [[SBIconModel alloc] init];
    return shared;
}

- (SBIcon*)leafIconForIdentifier:(NSString*)identifier {
    return icons.objectOf(
        OnPhone(thePhone())->applications.leafIconForIdentifier(noctara::textOf(identifier)));
}

- (SBIcon*)iconForDisplayIdentifier:(NSString*)identifier {
    return icons.objectOf(
        OnPhone(thePhone())->applications.iconForDisplayIdentifier(noctara::textOf(identifier)));
}

@end

@implementation SBIcon

- (void)launch {
    const OnPhone phone(thePhone());
    icons.thingOf(self)->launch();
}

@end

namespace noctara::springBoard {

void begin() {
    [[SpringBoard alloc] init];
}

void didFinishLaunching() {
    @autoreleasepool {
        UIApplication* application = [UIApplication sharedApplication];
        [(SpringBoard*)application applicationDidFinishLaunching:application];
    }
}

void acPowerChanged() {
    @autoreleasepool {
        [[SBUIController sharedInstance] ACPowerChanged];
    }
}

bool scanCapabilities() {
    @autoreleasepool {
        UIDevice* device = [UIDevice currentDevice];
        if (![device respondsToSelector:@selector(scanCapabilities)])
            return false;
        [device scanCapabilities];
        return true;
    }
}

} // namespace noctara::springBoard
