/// What the radio controller determines once about the device: its pair of data rates, and whether
/// the user can choose between them.
#include "platform/capabilities.h"
#include "platform/telephony.h"
#include "radios/radios_lib.h"
#include "tests/a_night.h"

#include <limits>

namespace noctara {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ADeviceKind : public ANight {
protected:
    RadiosLib& radiosOfThePhone() {
        switchOn();
        return create();
    }

    RadiosLib& create() {
        own = std::make_unique<RadiosLib>(phone().platform());
        return *own;
    }

    /// Whether the device can choose between two rates. At 2G, which is the fast rate of neither
    /// pair, 3G counts as on only for a device that cannot choose.
    bool choiceIsOffered() {
        phone().radios.chooseMaxRate(DataRate::kCTRegistrationDataRate2G);
        return !own->is3GEnabled();
    }

    bool offersAChoice(const std::string& machine) {
        scenario.phone.machine = machine;
        radiosOfThePhone();
        return choiceIsOffered();
    }

    std::unique_ptr<RadiosLib> own;
};

/// Libraries and functions with answers of their own.
class OtherLibraries final : public DynamicLibraries, public CapabilityFunctions {
public:
    LibraryRef open(const char* path) override {
        opened.emplace_back(path);
        return this;
    }
    FunctionRef find(LibraryRef, const char*) override { return hasFunction ? this : nullptr; }
    void close(LibraryRef) override { ++closed; }

    int linkedGSSystemHasCapability(const std::string&) override { return answer; }
    int callGSSystemHasCapability(FunctionRef, const std::string&) override { return answer; }
    std::optional<PropertyList> callGSSystemCopyCapability(FunctionRef,
                                                           const std::string&) override {
        return std::nullopt;
    }
    int callMGGetBoolAnswer(FunctionRef, const std::string&) override { return answer; }

    std::vector<std::string> opened;
    int closed = 0;
    bool hasFunction = true;
    int answer = 0;
};

TEST_F(ADeviceKind, is_settled_before_the_choice_of_rate_when_the_radios_are_created) {
    radiosOfThePhone();
    EXPECT_THAT(calls.calls(),
                ElementsAre("_CTServerConnectionCreate -> true",
                            "CTRegistrationCopySupportedDataRates -> [\"2G\",\"3G\"]",
                            "uname -> \"iPhone4,1\"", "userInterfaceIdiom -> 0"));
    EXPECT_EQ(phone().radios.openConnections, 0);
}

TEST_F(ADeviceKind, follows_from_the_supported_rates) {
    constexpr DataRate rate2G = DataRate::kCTRegistrationDataRate2G;
    constexpr DataRate rate3G = DataRate::kCTRegistrationDataRate3G;
    constexpr DataRate rate4G = DataRate::kCTRegistrationDataRate4G;
    constexpr DataRate other = DataRate::kCTRegistrationDataRateUnknown;
    struct Case {
        std::vector<DataRate> rates;
        std::int32_t kind;
    };
    for (const auto& [rates, kind] :
         {Case{{}, 0}, Case{{rate2G}, 0}, Case{{rate3G}, 0}, Case{{rate4G}, 0},
          Case{{rate2G, rate4G}, 0}, Case{{other}, 0}, Case{{rate2G, rate3G}, 1},
          Case{{rate3G, rate2G}, 1}, Case{{rate3G, rate4G}, 2}, Case{{rate4G, rate3G}, 2},
          Case{{rate2G, rate3G, rate4G}, 2}}) {
        scenario.phone.rates = rates;
        EXPECT_EQ(radiosOfThePhone().getDeviceKind(nullptr), kind)
            << calls.of({"CTRegistrationCopySupportedDataRates"}).back();
    }
}

TEST_F(ADeviceKind, once_settled_is_never_asked_of_the_telephony_server_again) {
    auto& radios = radiosOfThePhone();
    calls.clear();
    phone().radios.telephonyServerAnswers = false;

    EXPECT_EQ(radios.getDeviceKind(nullptr), 1);
    EXPECT_THAT(calls.calls(), IsEmpty());
}

TEST_F(ADeviceKind, without_any_pair_is_settled_too) {
    scenario.phone.rates = {DataRate::kCTRegistrationDataRate4G};
    auto& radios = radiosOfThePhone();
    EXPECT_EQ(calls.count("_CTServerConnectionCreate"), 1U);

    EXPECT_EQ(radios.getDeviceKind(nullptr), 0);
    EXPECT_EQ(calls.count("_CTServerConnectionCreate"), 1U);
    EXPECT_FALSE(choiceIsOffered());
}

TEST_F(ADeviceKind, does_not_depend_on_the_status_argument) {
    scenario.phone.telephonyServer = false;
    auto& radios = radiosOfThePhone();
    int status = 0;
    EXPECT_EQ(radios.getDeviceKind(&status), -1);

    phone().radios.telephonyServerAnswers = true;
    EXPECT_EQ(radios.getDeviceKind(&status), 1);
    EXPECT_EQ(phone().radios.openConnections, 0);
}

TEST_F(ADeviceKind, is_asked_for_again_until_the_telephony_server_answers) {
    scenario.phone.telephonyServer = false;
    auto& radios = radiosOfThePhone();
    EXPECT_THAT(calls.calls(),
                ElementsAre("_CTServerConnectionCreate -> false", "uname -> \"iPhone4,1\"",
                            "_CTServerConnectionCreate -> false"));

    EXPECT_EQ(radios.getDeviceKind(nullptr), -1);
    EXPECT_EQ(calls.count("_CTServerConnectionCreate"), 3U);

    phone().radios.telephonyServerAnswers = true;
    EXPECT_EQ(radios.getDeviceKind(nullptr), 1);
    EXPECT_EQ(radios.getDeviceKind(nullptr), 1);
    EXPECT_EQ(calls.count("_CTServerConnectionCreate"), 4U);
    EXPECT_EQ(calls.count("CTRegistrationCopySupportedDataRates"), 1U);
}

TEST_F(ADeviceKind, settled_only_after_creation_never_brings_the_choice_of_rate) {
    scenario.phone.telephonyServer = false;
    auto& radios = radiosOfThePhone();
    phone().radios.telephonyServerAnswers = true;
    ASSERT_EQ(radios.getDeviceKind(nullptr), 1);
    calls.clear();

    EXPECT_FALSE(choiceIsOffered());
    EXPECT_TRUE(radios.set3GEnabled(false));
    EXPECT_TRUE(radios.set3GEnabled(true));
    EXPECT_THAT(calls.calls(), IsEmpty());
}

TEST_F(ADeviceKind, of_the_first_phone_offers_no_choice_whatever_the_telephony_server_says) {
    scenario.phone.rates = {DataRate::kCTRegistrationDataRate2G,
                            DataRate::kCTRegistrationDataRate3G,
                            DataRate::kCTRegistrationDataRate4G};
    EXPECT_FALSE(offersAChoice("iPhone1,1"));
    EXPECT_THAT(calls.of({"uname", "userInterfaceIdiom", "CTCellularDataPlanGetIsEnabled"}),
                ElementsAre("uname -> \"iPhone1,1\""));
}

TEST_F(ADeviceKind, of_a_phone_whose_name_only_resembles_the_first_offers_the_choice) {
    for (const char* machine : {"iPhone1,2", "iPhone1,11", " iPhone1,1", "iphone1,1", ""})
        EXPECT_TRUE(offersAChoice(machine)) << machine;
}

TEST_F(ADeviceKind, of_any_ipod_offers_no_choice) {
    for (const char* machine : {"iPod4,1", "iPod", "my iPod", "iPad iPod"})
        EXPECT_FALSE(offersAChoice(machine)) << machine;
    EXPECT_TRUE(offersAChoice("ipod4,1"));
}

TEST_F(ADeviceKind, of_an_ipad_without_cellular_data_offers_no_choice) {
    scenario.phone.capabilities = {"wifi"};
    for (const char* machine : {"iPad2,1", "an iPad"}) {
        calls.clear();
        EXPECT_FALSE(offersAChoice(machine)) << machine;
        EXPECT_THAT(calls.of({"kCFCoreFoundationVersionNumber", "GSSystemHasCapability",
                              "userInterfaceIdiom"}),
                    ElementsAre("kCFCoreFoundationVersionNumber -> 793",
                                R"(GSSystemHasCapability ["cellular-data"] -> false)"));
    }
}

TEST_F(ADeviceKind, of_an_ipad_with_2G_and_3G_offers_no_choice_because_it_is_no_phone) {
    scenario.phone.idiom = 1;
    EXPECT_FALSE(offersAChoice("iPad2,1"));
    EXPECT_THAT(calls.of({"GSSystemHasCapability", "userInterfaceIdiom"}),
                ElementsAre(R"(GSSystemHasCapability ["cellular-data"] -> true)",
                            "userInterfaceIdiom -> 1"));
}

TEST_F(ADeviceKind, with_2G_and_3G_offers_the_choice_only_to_a_phones_interface) {
    for (const std::int32_t idiom : {0, 1, 2, -1}) {
        scenario.phone.idiom = idiom;
        EXPECT_EQ(offersAChoice("iPhone4,1"), idiom == 0) << idiom;
    }
    EXPECT_EQ(calls.count("GSSystemHasCapability"), 0U);
}

TEST_F(ADeviceKind, of_an_ipad_with_4G_and_cellular_data_offers_the_choice_without_being_a_phone) {
    scenario.phone.idiom = 1;
    scenario.phone.rates = {DataRate::kCTRegistrationDataRate2G,
                            DataRate::kCTRegistrationDataRate3G,
                            DataRate::kCTRegistrationDataRate4G};
    EXPECT_TRUE(offersAChoice("iPad3,3"));
    EXPECT_EQ(calls.count("userInterfaceIdiom"), 0U);
}

TEST_F(ADeviceKind, with_4G_offers_the_choice_for_good_when_cellular_data_is_on_at_creation) {
    scenario.phone.rates = {DataRate::kCTRegistrationDataRate2G,
                            DataRate::kCTRegistrationDataRate3G,
                            DataRate::kCTRegistrationDataRate4G};
    radiosOfThePhone();
    EXPECT_THAT(calls.calls(),
                ElementsAre("_CTServerConnectionCreate -> true",
                            "CTRegistrationCopySupportedDataRates -> [\"2G\",\"3G\",\"4G\"]",
                            "uname -> \"iPhone4,1\"", "CTCellularDataPlanGetIsEnabled -> true"));

    phone().radios.switchCellularData(false);
    EXPECT_TRUE(choiceIsOffered());
}

TEST_F(ADeviceKind, with_4G_never_offers_the_choice_when_cellular_data_is_off_at_creation) {
    scenario.phone.rates = {DataRate::kCTRegistrationDataRate2G,
                            DataRate::kCTRegistrationDataRate3G,
                            DataRate::kCTRegistrationDataRate4G};
    scenario.radios.cellularData = false;
    auto& radios = radiosOfThePhone();
    EXPECT_FALSE(choiceIsOffered());

    phone().radios.switchCellularData(true);
    EXPECT_FALSE(choiceIsOffered());
    EXPECT_TRUE(radios.detectRadioCapabilities());
    EXPECT_FALSE(choiceIsOffered());
}

TEST_F(ADeviceKind, asks_the_capability_of_the_linked_function_up_to_version_793) {
    for (const double version : {0.0, 550.32, 793.0}) {
        scenario.phone.corefoundation = version;
        auto& radios = radiosOfThePhone();
        calls.clear();
        EXPECT_TRUE(radios.supportsCapability("wifi"));
        EXPECT_FALSE(radios.supportsCapability("gps"));
        EXPECT_THAT(calls.of({"GSSystemHasCapability", "dlopen", "dlsym", "MGGetBoolAnswer"}),
                    ElementsAre(R"(GSSystemHasCapability ["wifi"] -> true)",
                                R"(GSSystemHasCapability ["gps"] -> false)"))
            << version;
    }
}

TEST_F(ADeviceKind, asks_the_capability_of_the_gestalt_library_above_version_793) {
    for (const double version : {std::nextafter(793.0, 1000.0), 793.1, 847.2}) {
        scenario.phone.corefoundation = version;
        auto& radios = radiosOfThePhone();
        calls.clear();
        EXPECT_TRUE(radios.supportsCapability("wifi"));
        EXPECT_FALSE(radios.supportsCapability("gps"));
        EXPECT_THAT(calls.of({"GSSystemHasCapability", "dlopen", "dlsym", "MGGetBoolAnswer"}),
                    ElementsAre(R"(dlopen ["/usr/lib/libMobileGestalt.dylib"] -> true)",
                                R"(dlsym ["MGGetBoolAnswer"] -> true)",
                                R"(MGGetBoolAnswer ["wifi"] -> true)",
                                R"(MGGetBoolAnswer ["gps"] -> false)"))
            << version;
    }
}

TEST_F(ADeviceKind, finds_the_gestalt_function_once_for_the_process_and_keeps_its_library_open) {
    scenario.phone.corefoundation = 847;
    EXPECT_TRUE(radiosOfThePhone().supportsCapability("wifi"));
    EXPECT_TRUE(create().supportsCapability("wifi"));
    EXPECT_EQ(calls.count("dlopen"), 1U);
    EXPECT_EQ(calls.count("dlclose"), 0U);
    EXPECT_EQ(phone().device.openLibraries, 1);
}

TEST_F(ADeviceKind, has_no_capability_while_the_gestalt_library_is_missing) {
    scenario.phone.corefoundation = 847;
    scenario.phone.gestalt = false;
    auto& radios = radiosOfThePhone();
    EXPECT_FALSE(radios.supportsCapability("wifi"));
    EXPECT_FALSE(radios.supportsCapability("wifi"));
    EXPECT_THAT(calls.of({"dlopen", "dlsym", "MGGetBoolAnswer"}),
                ElementsAre(R"(dlopen ["/usr/lib/libMobileGestalt.dylib"] -> false)",
                            R"(dlopen ["/usr/lib/libMobileGestalt.dylib"] -> false)"));

    phone().device.hasGestalt = true;
    EXPECT_TRUE(radios.supportsCapability("wifi"));
}

TEST_F(ADeviceKind, of_an_ipad_without_the_gestalt_library_offers_no_choice) {
    scenario.phone.corefoundation = 847;
    scenario.phone.gestalt = false;
    scenario.phone.rates = {DataRate::kCTRegistrationDataRate2G,
                            DataRate::kCTRegistrationDataRate3G,
                            DataRate::kCTRegistrationDataRate4G};
    EXPECT_FALSE(offersAChoice("iPad3,3"));
    EXPECT_THAT(calls.logged(), IsEmpty());
}

TEST_F(ADeviceKind, has_no_capability_while_the_gestalt_function_is_missing) {
    scenario.phone.corefoundation = 847;
    switchOn();
    OtherLibraries other;
    other.hasFunction = false;
    other.answer = 1;
    Platform altered = phone().platform();
    altered.libraries = &other;
    altered.capabilities = &other;
    RadiosLib radios(altered);

    EXPECT_FALSE(radios.supportsCapability("wifi"));
    EXPECT_EQ(cachedMGGetBoolAnswer, nullptr);
    EXPECT_FALSE(radios.supportsCapability("wifi"));
    EXPECT_EQ(other.opened.size(), 2U);

    other.hasFunction = true;
    EXPECT_TRUE(radios.supportsCapability("wifi"));
    EXPECT_TRUE(radios.supportsCapability("wifi"));
    EXPECT_EQ(other.opened.size(), 3U);
    EXPECT_EQ(other.closed, 0);
}

TEST_F(ADeviceKind, takes_only_the_lowest_bit_of_the_gestalt_answer) {
    scenario.phone.corefoundation = 847;
    switchOn();
    OtherLibraries other;
    Platform altered = phone().platform();
    altered.libraries = &other;
    altered.capabilities = &other;
    RadiosLib radios(altered);

    for (const int answer : {0, 1, 2, 3, 256, -1}) {
        other.answer = answer;
        EXPECT_EQ(radios.supportsCapability("wifi"), answer % 2 != 0) << answer;
    }
}

TEST_F(ADeviceKind, takes_any_linked_answer_but_zero_for_a_yes) {
    switchOn();
    OtherLibraries other;
    Platform altered = phone().platform();
    altered.capabilities = &other;
    RadiosLib radios(altered);

    for (const int answer : {0, 1, 2, 256, -1}) {
        other.answer = answer;
        EXPECT_EQ(radios.supportsCapability("wifi"), answer != 0) << answer;
    }
}

TEST_F(ADeviceKind, has_the_telephony_servers_callback_logged_each_time_with_debug_off) {
    settings.set("Debug", false);
    begin();
    playReadings(1);
    ASSERT_FALSE(monitor()._DEBUG_);
    ASSERT_EQ(phone().radios.serverCallback, &callbackCTServerConnectionCreate);
    calls.clear();

    phone().radios.serverCallback();
    phone().radios.serverCallback();

    EXPECT_THAT(calls.logged(), ElementsAre("callbackCTServerConnectionCreate",
                                            "callbackCTServerConnectionCreate"));
    EXPECT_THAT(calls.calls(), IsEmpty());
}

TEST_F(ADeviceKind, logs_nothing_by_itself) {
    scenario.phone.telephonyServer = false;
    scenario.phone.gestalt = false;
    scenario.phone.corefoundation = 847;
    offersAChoice("iPad2,1");
    EXPECT_THAT(calls.logged(), IsEmpty());
}

} // namespace

} // namespace noctara
