/// The wake-up that lets the monitor run while the phone sleeps, and other wake-ups in the list.
#include "tests/a_night.h"

#include <nlohmann/json.hpp>

namespace noctara {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string listPath =
    "/private/var/preferences/SystemConfiguration/com.apple.AutoWake.plist";
const std::string ours = "com.quorbit.Noctara";

std::string scheduled(double at) {
    return "CPScheduleWakeAtDateWithIdentifier [" + nlohmann::json(at).dump() + ",\"" + ours +
           "\"]";
}

std::string cancelled(double at) {
    return "CPCancelWakeAtDateWithIdentifier [" + nlohmann::json(at).dump() + ",\"" + ours + "\"]";
}

PropertyList entry(const char* scheduledBy, double at) {
    return Dictionary{{"scheduledby", scheduledBy}, {"time", Date{at}}};
}

/// A file store whose list of wake-ups has the content that a test sets.
class StoreWithList final : public FileStore {
public:
    explicit StoreWithList(ParsedPropertyList content) : list(std::move(content)) {}

    bool isVisible() const override { return false; }
    bool exists(const std::string& path) const override {
        return path == listPath || others->exists(path);
    }
    ParsedPropertyList read(const std::string& path) const override {
        return path == listPath ? list : others->read(path);
    }
    bool write(const std::string& path, const Dictionary& dictionary) override {
        return others->write(path, dictionary);
    }
    void remove(const std::string& path) override { others->remove(path); }
    void damage(const std::string& path) override { others->damage(path); }

private:
    ParsedPropertyList list;
    std::unique_ptr<FileStore> others = makeMemoryFileStore();
};

class AWakeUp : public AMonitor {
protected:
    AWakeUp() { scenario.start = {now}; }

    /// On a phone whose list holds the wake-ups of the scenario.
    void renew() {
        make();
        renewOnce();
    }

    /// On a phone whose list has any content.
    void renewWith(ParsedPropertyList list) {
        switchOn(std::make_unique<StoreWithList>(std::move(list)));
        phone().files.keepUpToDate(listPath, [](Dictionary&) {});
        own = std::make_unique<NoctaraThread>(phone().platform());
        renewOnce();
    }

    void renewOnce() {
        calls.clear();
        phone().asMonitorThread([this] { own->awakeApp(); });
    }

    std::vector<std::string> wakeCalls() const {
        return calls.of({"CPCancelWakeAtDateWithIdentifier", "CPScheduleWakeAtDateWithIdentifier"});
    }

    std::vector<std::string> stillScheduled() {
        std::vector<std::string> wakes;
        for (const auto& wake : phone().power.scheduledWakes())
            wakes.push_back(wake.scheduledBy + ' ' +
                            std::to_string(wake.at.secondsSince1970 - now));
        return wakes;
    }

    const double now = at(2014, 3, 1, 23, 30, 0) + 0.25;
};

TEST_F(AWakeUp, is_scheduled_900_seconds_ahead_with_the_fraction_of_the_second) {
    renew();
    EXPECT_THAT(wakeCalls(), ElementsAre(scheduled(now + 900)));
    EXPECT_THAT(stillScheduled(), ElementsAre("com.quorbit.Noctara 900.000000"));
}

TEST_F(AWakeUp, is_scheduled_900_seconds_ahead_across_the_limit_of_32_bits_in_2038) {
    const double limit = 2147483648.0;
    scenario.start = {limit - 0.5};
    renew();
    EXPECT_THAT(wakeCalls(), ElementsAre(scheduled(limit + 899.5)));
}

TEST_F(AWakeUp, replaces_both_of_ours_and_leaves_that_of_another) {
    scenario.wakes = {{ours, {now + 100.5}}, {"com.apple.alarm", {now + 200}}, {ours, {now + 300}}};
    renew();
    EXPECT_THAT(wakeCalls(),
                ElementsAre(cancelled(now + 100.5), cancelled(now + 300), scheduled(now + 900)));
    EXPECT_THAT(stillScheduled(),
                ElementsAre("com.apple.alarm 200.000000", "com.quorbit.Noctara 900.000000"));
}

TEST_F(AWakeUp, logs_each_one_that_it_replaces_just_before_cancelling_it) {
    scenario.wakes = {{ours, {at(2014, 3, 1, 23, 40, 0) + 0.5}},
                      {"com.apple.alarm", {at(2014, 3, 2, 6, 45, 0)}},
                      {ours, {at(2014, 3, 1, 23, 44, 59) + 0.5}}};
    renew();
    EXPECT_THAT(
        calls.of(
            {"NSLog", "CPCancelWakeAtDateWithIdentifier", "CPScheduleWakeAtDateWithIdentifier"}),
        ElementsAre(R"(NSLog ["Noctara Cancelling previous wake at 2014-03-01 23:40:00 +0000"])",
                    cancelled(at(2014, 3, 1, 23, 40, 0) + 0.5),
                    R"(NSLog ["Noctara Cancelling previous wake at 2014-03-01 23:44:59 +0000"])",
                    cancelled(at(2014, 3, 1, 23, 44, 59) + 0.5), scheduled(now + 900)));
}

TEST_F(AWakeUp, replaces_without_a_word_with_debug_off) {
    scenario.wakes = {{ours, {now + 100}}};
    make();
    own->_DEBUG_ = false;
    renewOnce();
    EXPECT_THAT(wakeCalls(), ElementsAre(cancelled(now + 100), scheduled(now + 900)));
    EXPECT_THAT(calls.logged(), IsEmpty());
}

TEST_F(AWakeUp, takes_one_reading_of_the_list_and_never_writes_it) {
    renew();
    ASSERT_EQ(calls.calls().size(), 2u);
    EXPECT_EQ(calls.lines[0].operation, "propertyListFromData:");
    EXPECT_EQ(calls.lines[0].argument(0), listPath);
    EXPECT_EQ(calls.lines[1].operation, "CPScheduleWakeAtDateWithIdentifier");
}

TEST_F(AWakeUp, is_recognised_by_its_identifier_character_for_character) {
    scenario.wakes = {{"com.quorbit.noctara", {now + 100}},
                      {"com.quorbit.Noctara2", {now + 200}},
                      {"com.quorbit.Noctar", {now + 300}},
                      {"", {now + 400}}};
    renew();
    EXPECT_THAT(wakeCalls(), ElementsAre(scheduled(now + 900)));
}

TEST_F(AWakeUp, is_scheduled_when_the_list_has_no_wakes_at_all) {
    renewWith(
        {PropertyList{Dictionary{{"sleep", Array{entry("com.quorbit.Noctara", now + 1)}}}}, ""});
    EXPECT_THAT(wakeCalls(), ElementsAre(scheduled(now + 900)));
    EXPECT_THAT(calls.logged(), IsEmpty());
}

TEST_F(AWakeUp, is_scheduled_when_the_wakes_are_no_array) {
    renewWith({PropertyList{Dictionary{{"wake", "tomorrow"}}}, ""});
    EXPECT_THAT(wakeCalls(), ElementsAre(scheduled(now + 900)));
}

TEST_F(AWakeUp, is_scheduled_when_the_list_is_no_dictionary) {
    renewWith({PropertyList{Array{entry("com.quorbit.Noctara", now + 1)}}, ""});
    EXPECT_THAT(wakeCalls(), ElementsAre(scheduled(now + 900)));
}

TEST_F(AWakeUp, passes_over_entries_that_say_nothing_of_who_scheduled_them) {
    renewWith({PropertyList{Dictionary{
                   {"wake", Array{"nonsense", Dictionary{{"time", Date{now + 1}}},
                                  Dictionary{{"scheduledby", 7}, {"time", Date{now + 2}}},
                                  entry("com.quorbit.Noctara", now + 3)}}}},
               ""});
    EXPECT_THAT(wakeCalls(), ElementsAre(cancelled(now + 3), scheduled(now + 900)));
}

TEST_F(AWakeUp, passes_over_entries_of_ours_without_a_date) {
    renewWith({PropertyList{Dictionary{
                   {"wake", Array{Dictionary{{"scheduledby", ours}},
                                  Dictionary{{"scheduledby", ours}, {"time", "tomorrow"}},
                                  Dictionary{{"scheduledby", ours}, {"time", now + 1}},
                                  entry("com.quorbit.Noctara", now + 2)}}}},
               ""});
    EXPECT_THAT(wakeCalls(), ElementsAre(cancelled(now + 2), scheduled(now + 900)));
    EXPECT_THAT(calls.logged(),
                ElementsAre("Noctara Cancelling previous wake at 2014-03-01 23:30:02 +0000"));
}

TEST_F(AWakeUp, takes_nothing_else_in_an_entry_into_account) {
    renewWith({PropertyList{Dictionary{{"poweron", Array{entry("com.quorbit.Noctara", now + 1)}},
                                       {"wake", Array{Dictionary{{"eventtype", "wake"},
                                                                 {"time", Date{now + 2}},
                                                                 {"leeway", 30},
                                                                 {"scheduledby", ours}}}}}},
               ""});
    EXPECT_THAT(wakeCalls(), ElementsAre(cancelled(now + 2), scheduled(now + 900)));
}

TEST_F(AWakeUp, is_neither_cancelled_nor_scheduled_when_the_list_is_missing) {
    renewWith({{}, "no such file"});
    EXPECT_THAT(wakeCalls(), IsEmpty());
    EXPECT_THAT(calls.logged(), ElementsAre("Failed to read dict no such file"));
}

TEST_F(AWakeUp, is_neither_cancelled_nor_scheduled_when_the_list_is_damaged) {
    scenario.wakes = {{ours, {now + 100}}};
    make();
    phone().files.damage(listPath);
    renewOnce();
    EXPECT_THAT(wakeCalls(), IsEmpty());
    EXPECT_THAT(calls.logged(), ElementsAre("Failed to read dict ends too early"));
    EXPECT_THAT(stillScheduled(), ElementsAre("com.quorbit.Noctara 100.000000"));
}

TEST_F(AWakeUp, is_given_up_without_a_word_with_debug_off) {
    make();
    own->_DEBUG_ = false;
    phone().files.damage(listPath);
    renewOnce();
    EXPECT_THAT(wakeCalls(), IsEmpty());
    EXPECT_THAT(calls.logged(), IsEmpty());
}

TEST_F(AWakeUp, is_tried_again_after_the_list_could_not_be_read) {
    make();
    phone().files.damage(listPath);
    renewOnce();
    ASSERT_THAT(wakeCalls(), IsEmpty());
    phone().files.remove(listPath);
    renewOnce();
    EXPECT_THAT(wakeCalls(), ElementsAre(scheduled(now + 900)));
}

/// A wake-up service whose calls have no effect.
class DeafWakeScheduler final : public WakeScheduler {
public:
    void schedule(Date, const std::string&) override { ++schedules; }
    void cancel(Date, const std::string&) override { ++cancels; }

    int schedules = 0;
    int cancels = 0;
};

TEST_F(AWakeUp, is_scheduled_whether_or_not_the_cancelling_worked) {
    scenario.wakes = {{ours, {now + 100}}};
    switchOn();
    DeafWakeScheduler deaf;
    Platform altered = phone().platform();
    altered.wakes = &deaf;
    own = std::make_unique<NoctaraThread>(altered);
    renewOnce();
    renewOnce();
    EXPECT_EQ(deaf.cancels, 2);
    EXPECT_EQ(deaf.schedules, 2);
    EXPECT_THAT(calls.logged(),
                ElementsAre("Noctara Cancelling previous wake at 2014-03-01 23:31:40 +0000"));
}

TEST_F(AWakeUp, is_reckoned_from_before_the_list_is_read) {
    make();
    phone().files.keepUpToDate(listPath, [this](Dictionary&) { ++phone().clock.monotonic; });
    renewOnce();
    EXPECT_THAT(wakeCalls(), ElementsAre(scheduled(now + 900)));
}

/// A phone that keeps a wake-up scheduled.
class AnActiveNight : public ANight {
protected:
    AnActiveNight() { settings.set("ActiveOnSleep", true); }

    double ahead() {
        const auto& wakes = phone().power.scheduledWakes();
        return wakes.size() == 1 ? wakes[0].at.secondsSince1970 - phone().now().secondsSince1970
                                 : -1;
    }
};

TEST_F(AnActiveNight, always_has_exactly_one_wake_up_at_most_900_seconds_ahead) {
    begin();
    for (int i = 0; i < 100; ++i) {
        playFor(7);
        EXPECT_GT(ahead(), 890);
        EXPECT_LE(ahead(), 900);
    }
}

TEST_F(AnActiveNight, renews_the_wake_up_while_monitoring_is_off) {
    settings.set("Enabled", false);
    begin();
    playFor(100);
    EXPECT_GT(ahead(), 885);
    EXPECT_EQ(calls.count("startAccelerometerUpdates"), 0u);
}

TEST_F(AnActiveNight, renews_the_wake_up_just_before_each_pause) {
    begin();
    playFor(12);
    const auto sequence =
        calls.of({"stopAccelerometerUpdates",
                  "propertyListFromData:", "CPScheduleWakeAtDateWithIdentifier", "sleep"});
    ASSERT_FALSE(sequence.empty());
    int renewals = 0;
    for (std::size_t i = 0; i + 1 < sequence.size(); ++i)
        if (sequence[i].starts_with("CPSchedule")) {
            EXPECT_EQ(sequence[i + 1], "sleep [1]");
            ++renewals;
        }
    EXPECT_GT(renewals, 1);
}

TEST_F(AnActiveNight, wakes_a_phone_that_fell_asleep_within_900_seconds) {
    scenario.phone.idleSleep = 60;
    begin();
    playFor(2 * 3600);
    double last = 0;
    double longest = 0;
    for (const auto& line : calls.lines)
        if (line.operation == "startAccelerometerUpdates") {
            longest = last == 0 ? 0 : std::max(longest, line.at - last);
            last = line.at;
        }
    EXPECT_GT(longest, 600) << "the phone never slept";
    EXPECT_LE(longest, 910);
    EXPECT_GT(last, phone().now().secondsSince1970 - 910);
}

TEST_F(AnActiveNight, leaves_the_last_wake_up_to_fire_when_the_setting_is_switched_off) {
    begin();
    playFor(60);
    change({{"ActiveOnSleep", false}});
    calls.clear();
    playFor(600);
    EXPECT_GT(ahead(), 250);
    playFor(400);
    EXPECT_THAT(phone().power.scheduledWakes(), IsEmpty());
    EXPECT_EQ(calls.count("CPCancelWakeAtDateWithIdentifier"), 0u);
    EXPECT_EQ(calls.count("CPScheduleWakeAtDateWithIdentifier"), 0u);
}

TEST_F(AnActiveNight, leaves_the_last_wake_up_when_the_monitor_ends) {
    begin();
    playFor(60);
    phone().happens(MonitorStop{});
    playFor(30);
    EXPECT_GT(ahead(), 850);
}

TEST_F(ANight, without_the_setting_schedules_no_wake_up) {
    begin();
    playFor(60);
    EXPECT_GT(calls.count("startAccelerometerUpdates"), 0u);
    EXPECT_EQ(calls.count("propertyListFromData:"), 0u);
    EXPECT_EQ(calls.count("CPScheduleWakeAtDateWithIdentifier"), 0u);
}

} // namespace
} // namespace noctara
