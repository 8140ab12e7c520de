/// The data-rate switch: which rates count as "3G", and the steps from one rate to another.
#include "platform/cellular.h"
#include "radios/radios_lib.h"
#include "tests/a_night.h"

namespace noctara {

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

using enum DataRate;

const std::string setTo2G = R"(CTRegistrationSetMaxAllowedDataRate ["2G"] -> true)";
const std::string setTo3G = R"(CTRegistrationSetMaxAllowedDataRate ["3G"] -> true)";
const std::string setTo4G = R"(CTRegistrationSetMaxAllowedDataRate ["4G"] -> true)";

constexpr DataRate allRates[] = {kCTRegistrationDataRateUnknown, kCTRegistrationDataRate2G,
                                 kCTRegistrationDataRate3G, kCTRegistrationDataRate4G};

class TheDataRate : public ANight {
protected:
    /// A phone whose radio offers `rates`, held at `maxRate`.
    RadiosLib& onAPhone(const std::vector<DataRate>& rates, DataRate maxRate) {
        scenario.phone.rates = rates;
        scenario.radios.maxRate = maxRate;
        switchOn();
        own = std::make_unique<RadiosLib>(phone().platform());
        calls.clear();
        return *own;
    }
    RadiosLib& onA3GPhone(DataRate maxRate) {
        return onAPhone({kCTRegistrationDataRate2G, kCTRegistrationDataRate3G}, maxRate);
    }
    RadiosLib& onA4GPhone(DataRate maxRate) {
        return onAPhone(
            {kCTRegistrationDataRate2G, kCTRegistrationDataRate3G, kCTRegistrationDataRate4G},
            maxRate);
    }

    /// A device whose rate cannot be chosen.
    RadiosLib& withoutAChoice(DataRate maxRate) {
        scenario.phone.machine = "iPod4,1";
        return onA3GPhone(maxRate);
    }

    DataRate maxRate() { return phone().radios.states().maxRate; }
    std::vector<std::string> rateCalls() {
        return calls.of({"CTRegistrationSetMaxAllowedDataRate"});
    }

    std::unique_ptr<RadiosLib> own;
};

/// A cellular radio that answers as it is told to.
class OtherCellularRadio final : public CellularRadio {
public:
    bool dataPlanIsEnabled() override { return true; }
    bool registrationDataIsEnabled() override { return true; }
    void setDataPlanIsEnabled(bool) override {}
    DataRate currentMaxAllowedDataRate() override { return rate; }
    bool setMaxAllowedDataRate(DataRate wanted) override {
        wantedRates.push_back(wanted);
        const bool answer = answers.empty() || answers.front();
        if (!answers.empty())
            answers.erase(answers.begin());
        return answer;
    }
    ServerConnectionRef createServerConnection(ServerConnectionCallback) override { return this; }
    void releaseConnection(ServerConnectionRef) override {}
    std::vector<DataRate> supportedDataRates() override { return supported; }

    DataRate rate = kCTRegistrationDataRate3G;
    std::vector<DataRate> supported{kCTRegistrationDataRate2G, kCTRegistrationDataRate3G};
    std::vector<DataRate> wantedRates;
    std::vector<bool> answers; ///< To the next changes; then yes.
};

TEST_F(TheDataRate, is_asked_of_the_phone_every_time) {
    auto& radios = onA3GPhone(kCTRegistrationDataRate3G);
    EXPECT_EQ(radios.getCurrentMaxAllowedDataRate(), kCTRegistrationDataRate3G);

    phone().radios.chooseMaxRate(kCTRegistrationDataRate2G);
    EXPECT_EQ(radios.getCurrentMaxAllowedDataRate(), kCTRegistrationDataRate2G);
    EXPECT_THAT(calls.calls(), ElementsAre("CTRegistrationGetCurrentMaxAllowedDataRate -> \"3G\"",
                                           "CTRegistrationGetCurrentMaxAllowedDataRate -> \"2G\""));
}

TEST_F(TheDataRate, is_fast_on_a_3G_phone_at_3G_alone) {
    auto& radios = onA3GPhone(kCTRegistrationDataRate3G);
    for (const DataRate rate : allRates) {
        phone().radios.chooseMaxRate(rate);
        EXPECT_EQ(radios.is3GEnabled(), rate == kCTRegistrationDataRate3G)
            << wordOf(dataRateWords, rate);
    }
}

TEST_F(TheDataRate, is_fast_on_a_4G_phone_at_4G_alone) {
    auto& radios = onA4GPhone(kCTRegistrationDataRate4G);
    for (const DataRate rate : allRates) {
        phone().radios.chooseMaxRate(rate);
        EXPECT_EQ(radios.is3GEnabled(), rate == kCTRegistrationDataRate4G)
            << wordOf(dataRateWords, rate);
    }
}

TEST_F(TheDataRate, is_read_to_tell_whether_it_is_fast) {
    onA4GPhone(kCTRegistrationDataRate3G).is3GEnabled();
    EXPECT_THAT(calls.calls(), ElementsAre("CTRegistrationGetCurrentMaxAllowedDataRate -> \"3G\""));
}

TEST_F(TheDataRate, answers_a_query_whatever_its_argument) {
    auto& radios = onA3GPhone(kCTRegistrationDataRate3G);
    EXPECT_TRUE(radios.query3GEnabled(false));
    EXPECT_TRUE(radios.query3GEnabled(true));

    phone().radios.chooseMaxRate(kCTRegistrationDataRate2G);
    EXPECT_FALSE(radios.query3GEnabled(false));
    EXPECT_FALSE(radios.query3GEnabled(true));
}

TEST_F(TheDataRate, without_a_choice_counts_as_fast_without_being_read) {
    auto& radios = withoutAChoice(kCTRegistrationDataRate2G);
    EXPECT_TRUE(radios.is3GEnabled());
    EXPECT_TRUE(radios.query3GEnabled(false));
    EXPECT_THAT(calls.calls(), IsEmpty());
}

TEST_F(TheDataRate, without_a_choice_is_never_set_and_every_wish_counts_as_met_during_calls_too) {
    for (const auto& [call, word] : callStateWords) {
        scenario.radios.call = call;
        auto& radios = withoutAChoice(kCTRegistrationDataRate2G);
        EXPECT_TRUE(radios.set3GEnabled(true)) << word;
        EXPECT_TRUE(radios.set3GEnabled(false)) << word;
        EXPECT_THAT(calls.calls(), IsEmpty());
    }
}

TEST_F(TheDataRate, is_not_changed_during_a_call) {
    for (const CallState call :
         {CallState::inCall, CallState::outgoing, CallState::incoming, CallState::active}) {
        const auto word = wordOf(callStateWords, call);
        scenario.radios.call = call;
        auto& radios = onA3GPhone(kCTRegistrationDataRate3G);
        EXPECT_FALSE(radios.set3GEnabled(false)) << word;
        EXPECT_FALSE(radios.set3GEnabled(true)) << word;
        EXPECT_EQ(maxRate(), kCTRegistrationDataRate3G);
        EXPECT_EQ(calls.count("CTRegistrationGetCurrentMaxAllowedDataRate"), 0U);
    }
}

TEST_F(TheDataRate, is_not_changed_when_it_is_as_wanted) {
    auto& radios = onA3GPhone(kCTRegistrationDataRate3G);
    EXPECT_TRUE(radios.set3GEnabled(true));
    phone().radios.chooseMaxRate(kCTRegistrationDataRate2G);
    EXPECT_TRUE(radios.set3GEnabled(false));
    EXPECT_THAT(rateCalls(), IsEmpty());
    EXPECT_EQ(maxRate(), kCTRegistrationDataRate2G);
}

TEST_F(TheDataRate, is_changed_after_asking_for_calls_and_for_the_rate_and_nothing_is_posted) {
    EXPECT_TRUE(onA3GPhone(kCTRegistrationDataRate3G).set3GEnabled(false));
    EXPECT_THAT(calls.calls(),
                ElementsAre(R"(objc_getClass ["SBTelephonyManager"] -> true)",
                            "sharedTelephonyManager -> true", "inCall -> false",
                            "outgoingCallExists -> false", "incomingCallExists -> false",
                            "activeCallExists -> false",
                            "CTRegistrationGetCurrentMaxAllowedDataRate -> \"3G\"", setTo2G));
}

TEST_F(TheDataRate, is_changed_without_a_telephony_manager) {
    scenario.phone.telephonyManager = false;
    EXPECT_TRUE(onA3GPhone(kCTRegistrationDataRate3G).set3GEnabled(false));
    EXPECT_EQ(maxRate(), kCTRegistrationDataRate2G);
}

TEST_F(TheDataRate, moves_in_steps_that_depend_on_the_phone) {
    struct Case {
        bool is4G;
        bool enabled;
        bool disable3G;
        DataRate from;
        std::vector<std::string> steps;
    };
    const std::vector<Case> cases{
        {true, true, true, kCTRegistrationDataRate2G, {setTo3G, setTo4G}},
        {true, true, false, kCTRegistrationDataRate3G, {setTo4G}},
        {true, false, true, kCTRegistrationDataRate4G, {setTo3G, setTo2G}},
        {true, false, false, kCTRegistrationDataRate4G, {setTo3G}},
        {false, true, true, kCTRegistrationDataRate2G, {setTo3G}},
        {false, true, false, kCTRegistrationDataRate2G, {setTo3G}},
        {false, false, true, kCTRegistrationDataRate3G, {setTo2G}},
        {false, false, false, kCTRegistrationDataRate3G, {setTo2G}},
    };
    for (const auto& [is4G, enabled, disable3G, from, steps] : cases) {
        auto& radios = is4G ? onA4GPhone(from) : onA3GPhone(from);
        radios.setDisable3GOn4GDevices(disable3G);
        EXPECT_TRUE(radios.set3GEnabled(enabled));
        EXPECT_THAT(rateCalls(), ElementsAreArray(steps))
            << is4G << enabled << disable3G << " from " << wordOf(dataRateWords, from);
    }
}

TEST_F(TheDataRate, of_a_new_radio_controller_goes_down_from_4G_to_3G_only) {
    onA4GPhone(kCTRegistrationDataRate4G).set3GEnabled(false);
    EXPECT_THAT(rateCalls(), ElementsAre(setTo3G));
}

TEST_F(TheDataRate, of_the_monitor_goes_down_from_4G_to_2G_by_way_of_3G_and_back_the_same_way) {
    scenario.phone.rates = {kCTRegistrationDataRate2G, kCTRegistrationDataRate3G,
                            kCTRegistrationDataRate4G};
    scenario.radios.maxRate = kCTRegistrationDataRate4G;
    begin();
    monitor().radiosLib->set3GEnabled(false);
    monitor().radiosLib->set3GEnabled(true);
    EXPECT_THAT(rateCalls(), ElementsAre(setTo3G, setTo2G, setTo3G, setTo4G));
}

TEST_F(TheDataRate, of_a_4G_phone_held_at_3G_counts_as_slow) {
    auto& radios = onA4GPhone(kCTRegistrationDataRate3G);
    radios.setDisable3GOn4GDevices(true);
    EXPECT_FALSE(radios.is3GEnabled());

    EXPECT_TRUE(radios.set3GEnabled(false));
    EXPECT_THAT(rateCalls(), IsEmpty());
    EXPECT_EQ(maxRate(), kCTRegistrationDataRate3G);

    EXPECT_TRUE(radios.set3GEnabled(true));
    EXPECT_THAT(rateCalls(), ElementsAre(setTo3G, setTo4G));
}

TEST_F(TheDataRate, between_3G_and_4G_needs_no_2G_on_offer) {
    auto& radios =
        onAPhone({kCTRegistrationDataRate3G, kCTRegistrationDataRate4G}, kCTRegistrationDataRate4G);
    radios.setDisable3GOn4GDevices(true);
    EXPECT_TRUE(radios.set3GEnabled(false));
    EXPECT_THAT(rateCalls(), ElementsAre(setTo3G, setTo2G));
}

TEST_F(TheDataRate, that_the_phone_will_not_set_makes_the_answer_no) {
    switchOn();
    OtherCellularRadio radio;
    Platform altered = phone().platform();
    altered.cellular = &radio;
    RadiosLib radios(altered);
    radio.answers = {false};
    EXPECT_FALSE(radios.set3GEnabled(false));
    EXPECT_THAT(radio.wantedRates, ElementsAre(kCTRegistrationDataRate2G));
}

TEST_F(TheDataRate, set_in_two_steps_makes_the_answer_of_the_second_alone_count) {
    for (const bool second : {true, false}) {
        switchOn();
        OtherCellularRadio radio;
        radio.supported = {kCTRegistrationDataRate3G, kCTRegistrationDataRate4G};
        radio.rate = kCTRegistrationDataRate4G;
        radio.answers = {!second, second};
        Platform altered = phone().platform();
        altered.cellular = &radio;
        RadiosLib radios(altered);
        radios.setDisable3GOn4GDevices(true);

        EXPECT_EQ(radios.set3GEnabled(false), second);
        EXPECT_THAT(radio.wantedRates,
                    ElementsAre(kCTRegistrationDataRate3G, kCTRegistrationDataRate2G));
    }
}

TEST_F(TheDataRate, is_chosen_without_a_word_in_the_log) {
    auto& radios = onA3GPhone(kCTRegistrationDataRate3G);
    radios.set3GEnabled(false);
    phone().radios.call = CallState::active;
    radios.set3GEnabled(true);
    EXPECT_THAT(calls.logged(), IsEmpty());
}

} // namespace

} // namespace noctara
