/// The radio controller's methods, sent from outside.
#include "phones/springboard/private_classes.h"
#include "phones/springboard/radios_lib.h"
#include "tests/phones/stand_in/objects_on_a_phone.h"

#include <dlfcn.h>

@interface SBWiFiManager (Query)
- (id)wifiManagerQuery;
@end

namespace noctara {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* refreshed = "notify_post [\"com.sbsettings.refreshalltoggles\"]";

class TheRadioControllersMethods : public ObjectsOnAPhone {
protected:
    TheRadioControllersMethods() : radios([make<::RadiosLib>(@"RadiosLib") autorelease]) {
        calls.clear();
    }

    /// The operations that switch something, and the announcements. They are those since the last
    /// question.
    std::vector<std::string> changes() {
        auto found = calls.of(
            {"setIsInAirplaneMode:", "updateAirplaneMode", "setWiFiEnabled:", "setPowered:",
             "setEnabled:", "CTCellularDataPlanSetIsEnabled", "CTRegistrationSetMaxAllowedDataRate",
             "setLocationServicesEnabled:", "writeToFile:atomically:", "notify_post",
             "postNotificationName:object:userInfo:"});
        calls.clear();
        return found;
    }

    ::RadiosLib* const radios;
};

TEST_F(TheRadioControllersMethods, are_these_of_a_class_that_derives_from_NSObject) {
    Class theClass = NSClassFromString(@"RadiosLib");
    EXPECT_STREQ(class_getName(class_getSuperclass(theClass)), "NSObject");
    // All but `dealloc` are for other code to send.
    EXPECT_THAT(
        methodsOf(theClass),
        testing::UnorderedElementsAre(
            method<id>("init"), method<void>("dealloc"), method<BOOL>("isAirplaneModeEnabled"),
            method<void, BOOL>("setAirplaneModeEnabled:"), method<BOOL>("isCallInProgress"),
            method<BOOL>("isTethering"), method<BOOL>("isWifiEnabled"),
            method<void, BOOL>("setWifiEnabled:"), method<id>("wifiManagerQuery"),
            method<BOOL>("isBluetoothEnabled"), method<BOOL>("isBluetoothConnected"),
            method<void, BOOL>("setBluetoothEnabled:"), method<BOOL>("isCellularDataEnabled"),
            method<BOOL, BOOL>("setCellularDataEnabled:"),
            method<id>("getCurrentMaxAllowedDataRate"), method<BOOL>("is3GEnabled"),
            method<BOOL, BOOL>("query3GEnabled:"), method<BOOL, BOOL>("set3GEnabled:"),
            method<void, BOOL>("setDisable3GOn4GDevices:"), method<BOOL>("isLocationEnabled"),
            method<void, BOOL>("setLocationEnabled:"), method<BOOL>("isPushEnabled"),
            method<void, BOOL>("setPushEnabled:"), method<int, id>("getDeviceKind:"),
            method<BOOL>("detectRadioCapabilities"), method<BOOL, id>("supportsCapability:")));
    EXPECT_THAT(methodsOf(object_getClass(theClass)), IsEmpty());
}

TEST_F(TheRadioControllersMethods, init_asks_the_telephony_server_and_the_device) {
    [make<::RadiosLib>(@"RadiosLib") release];
    EXPECT_THAT(calls.of({"_CTServerConnectionCreate", "uname"}),
                ElementsAre("_CTServerConnectionCreate -> true", "uname -> \"iPhone4,1\""));
}

TEST_F(TheRadioControllersMethods, read_and_switch_airplane_mode) {
    EXPECT_EQ([radios isAirplaneModeEnabled], NO);
    [radios setAirplaneModeEnabled:nonZero];
    EXPECT_THAT(changes(),
                ElementsAre("setIsInAirplaneMode: [true]", "updateAirplaneMode", refreshed));
    EXPECT_EQ([radios isAirplaneModeEnabled], YES);
    [radios setAirplaneModeEnabled:NO];
    EXPECT_THAT(changes(),
                ElementsAre("setIsInAirplaneMode: [false]", "updateAirplaneMode", refreshed));
}

TEST_F(TheRadioControllersMethods, tell_whether_there_is_a_call) {
    EXPECT_EQ([radios isCallInProgress], NO);
    phone().happens(CallChange{CallState::active});
    EXPECT_EQ([radios isCallInProgress], YES);
}

TEST_F(TheRadioControllersMethods, tell_whether_the_phone_is_tethering) {
    EXPECT_EQ([radios isTethering], YES);
    EXPECT_THAT(calls.of({"isNetworkTethering"}), ElementsAre("isNetworkTethering -> true"));
}

TEST_F(TheRadioControllersMethods, read_and_switch_wifi) {
    EXPECT_EQ([radios isWifiEnabled], YES);
    [radios setWifiEnabled:nonZero];
    EXPECT_THAT(changes(), IsEmpty());
    [radios setWifiEnabled:NO];
    EXPECT_THAT(changes(), ElementsAre("setWiFiEnabled: [false]", refreshed));
    EXPECT_EQ([radios isWifiEnabled], NO);
}

/// The Wi-Fi manager's answer to a query of any name.
NSObject* answerOfWifi = nil;
id answerQuery(id, SEL) {
    return answerOfWifi;
}

TEST_F(TheRadioControllersMethods, pass_the_query_of_the_wifi_manager_on_under_its_own_selector) {
    EXPECT_EQ([radios wifiManagerQuery], nil);
    EXPECT_THAT(calls.of({"wifiManagerQuery"}), ElementsAre("wifiManagerQuery -> null"));

    // Other code has given the method one more name.
    const SEL otherName = sel_registerName("queryByAnotherName");
    const Method query =
        class_getInstanceMethod([radios class], sel_registerName("wifiManagerQuery"));
    class_addMethod(NSClassFromString(@"SBWiFiManager"), otherName,
                    reinterpret_cast<IMP>(answerQuery), "@@:");
    // A class of its own, so that RadiosLib keeps the methods that it has.
    Class derived = objc_allocateClassPair([radios class], "RadiosLibWithOtherName", 0);
    objc_registerClassPair(derived);
    class_addMethod(derived, otherName, method_getImplementation(query), "@@:");
    ::RadiosLib* const other = [make<::RadiosLib>(@"RadiosLibWithOtherName") autorelease];
    answerOfWifi = [[[NSObject alloc] init] autorelease];
    EXPECT_EQ([other performSelector:otherName], answerOfWifi);
}

TEST_F(TheRadioControllersMethods, read_and_switch_bluetooth) {
    EXPECT_EQ([radios isBluetoothEnabled], YES);
    EXPECT_EQ([radios isBluetoothConnected], NO);
    [radios setBluetoothEnabled:NO];
    EXPECT_THAT(changes(), ElementsAre("setEnabled: [false]", refreshed));
    EXPECT_EQ([radios isBluetoothEnabled], NO);
    [radios setBluetoothEnabled:nonZero];
    EXPECT_THAT(changes(), ElementsAre("setPowered: [true]", refreshed));
    phone().happens(BluetoothConnection{true});
    EXPECT_EQ([radios isBluetoothConnected], YES);
}

TEST_F(TheRadioControllersMethods, read_and_switch_cellular_data) {
    EXPECT_EQ([radios isCellularDataEnabled], YES);
    EXPECT_EQ([radios setCellularDataEnabled:NO], YES);
    EXPECT_THAT(changes(),
                ElementsAre("CTCellularDataPlanSetIsEnabled [false]", refreshed,
                            "postNotificationName:object:userInfo: "
                            "[\"PSCellDataChangedNotification\",{\"DataEnabled\":false}]"));
    EXPECT_EQ([radios isCellularDataEnabled], NO);
    phone().happens(CallChange{CallState::incoming});
    EXPECT_EQ([radios setCellularDataEnabled:nonZero], NO);
    EXPECT_THAT(changes(), IsEmpty());
}

TEST_F(TheRadioControllersMethods, hand_out_the_constant_of_the_allowed_rate) {
    void* const library = dlopen(NOCTARA_LIBRARY, RTLD_NOW | RTLD_NOLOAD);
    EXPECT_EQ([radios getCurrentMaxAllowedDataRate],
              *static_cast<id*>(dlsym(library, "kCTRegistrationDataRate4G")));
    phone().happens(MaxRateChange{DataRate::kCTRegistrationDataRate2G});
    EXPECT_EQ([radios getCurrentMaxAllowedDataRate],
              *static_cast<id*>(dlsym(library, "kCTRegistrationDataRate2G")));
}

TEST_F(TheRadioControllersMethods, read_and_switch_the_fast_rate) {
    EXPECT_EQ([radios is3GEnabled], YES);
    EXPECT_EQ([radios query3GEnabled:NO], YES);
    EXPECT_EQ([radios set3GEnabled:NO], YES);
    EXPECT_THAT(changes(), ElementsAre("CTRegistrationSetMaxAllowedDataRate [\"3G\"] -> true"));
    EXPECT_EQ([radios is3GEnabled], NO);
    EXPECT_EQ([radios query3GEnabled:YES], NO);
    phone().happens(CallChange{CallState::active});
    EXPECT_EQ([radios set3GEnabled:nonZero], NO);
    EXPECT_THAT(changes(), IsEmpty());
}

TEST_F(TheRadioControllersMethods, setDisable3GOn4GDevices_makes_a_4G_phone_go_down_to_2G) {
    [radios setDisable3GOn4GDevices:nonZero];
    EXPECT_EQ([radios set3GEnabled:NO], YES);
    EXPECT_THAT(changes(), ElementsAre("CTRegistrationSetMaxAllowedDataRate [\"3G\"] -> true",
                                       "CTRegistrationSetMaxAllowedDataRate [\"2G\"] -> true"));
    [radios setDisable3GOn4GDevices:NO];
    EXPECT_EQ([radios set3GEnabled:YES], YES);
    EXPECT_THAT(changes(), ElementsAre("CTRegistrationSetMaxAllowedDataRate [\"4G\"] -> true"));
}

TEST_F(TheRadioControllersMethods, read_and_switch_location_services) {
    EXPECT_EQ([radios isLocationEnabled], YES);
    [radios setLocationEnabled:NO];
    EXPECT_THAT(changes(), ElementsAre("setLocationServicesEnabled: [false]",
                                       "notify_post [\"com.apple.locationd/Prefs\"]"));
    EXPECT_EQ([radios isLocationEnabled], NO);
    [radios setLocationEnabled:nonZero];
    EXPECT_THAT(changes(), ElementsAre("setLocationServicesEnabled: [true]",
                                       "notify_post [\"com.apple.locationd/Prefs\"]"));
}

TEST_F(TheRadioControllersMethods, read_and_switch_push) {
    EXPECT_EQ([radios isPushEnabled], YES);
    [radios setPushEnabled:NO];
    EXPECT_EQ([radios isPushEnabled], NO);
    [radios setPushEnabled:nonZero];
    EXPECT_EQ([radios isPushEnabled], YES);
    EXPECT_THAT(changes(),
                ElementsAre(testing::HasSubstr("{\"PCEnablePush\":false}"),
                            "notify_post [\"com.apple.persistentconnection-mcc/Prefs\"]",
                            testing::HasSubstr("{\"PCEnablePush\":true}"),
                            "notify_post [\"com.apple.persistentconnection-mcc/Prefs\"]"));
}

TEST_F(TheRadioControllersMethods, tell_the_device_kind_and_its_capabilities) {
    EXPECT_EQ([radios getDeviceKind:nil], 2);
    EXPECT_EQ([radios detectRadioCapabilities], YES);
    phone().happens(CellularDataSwitch{false});
    EXPECT_EQ([radios detectRadioCapabilities], NO);
    EXPECT_EQ([radios supportsCapability:@"cellular-data"], YES);
    EXPECT_EQ([radios supportsCapability:@"gps"], NO);
}

} // namespace

} // namespace noctara
