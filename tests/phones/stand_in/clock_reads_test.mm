/// The library's reads of the clock, as a phone in real time records them. This process is a phone
/// of its own, with the library injected.
#include "input/temporary_folder.h"
#include "phones/stand_in/host/injected_library.h"
#include "phones/stand_in/host/phone_in_real_time.h"
#include "phones/stand_in/host/springboard.h"
#include "phones/stand_in/host/watched_foundation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace noctara {

namespace {

/// What was read from the clock or passed on of it, in order.
class DatesSeen : public PhoneObserver {
public:
    void called(const Call& call) override {
        switch (call.operation) {
        case Operation::time:
            times.push_back(std::get<std::int64_t>(*call.result));
            timesOfLines.push_back(call.at.secondsSince1970);
            break;
        case Operation::date:
            lastDate = std::get<double>(*call.result);
            EXPECT_EQ(lastDate, call.at.secondsSince1970);
            break;
        case Operation::CPCancelWakeAtDateWithIdentifier:
            cancelled.push_back(std::get<double>(call.arguments[0]));
            break;
        case Operation::CPScheduleWakeAtDateWithIdentifier:
            scheduled.push_back(std::get<double>(call.arguments[0]));
            datesBefore.push_back(lastDate);
            break;
        default:
            break;
        }
    }
    void happens(const Happening&) override {}

    std::vector<std::int64_t> times;
    std::vector<double> timesOfLines;
    double lastDate = 0;
    std::vector<double> scheduled;
    std::vector<double> datesBefore; ///< What was read last before each wake-up was scheduled.
    std::vector<double> cancelled;
};

/// A minute in which the monitor keeps a wake-up scheduled. It takes three seconds, because a
/// library with sanitizers can need one to load.
DatesSeen& aMinuteInRealTime() {
    static auto& seen = *new DatesSeen;
    static const bool played = [] {
        Scenario scenario;
        scenario.end.secondsSince1970 = scenario.start.secondsSince1970 + 60;
        scenario.settings = Dictionary{{"Enabled", true}, {"ActiveOnSleep", true}};
        static const TemporaryFolder folder;
        setUpFoundation("Europe/Berlin");
        watchFoundation();
        auto& phone = *new PhoneInRealTime(scenario, folder.path, 20);
        phone.observe(seen);
        springBoard::begin();
        injectedLibrary::inject(NOCTARA_LIBRARY);
        springBoard::didFinishLaunching();
        return phone.playToTheEnd();
    }();
    EXPECT_TRUE(played);
    return seen;
}

TEST(ThePhoneInRealTime, records_the_whole_seconds_that_the_library_reads) {
    const auto& seen = aMinuteInRealTime();
    ASSERT_GT(seen.times.size(), 10U);
    for (std::size_t i = 0; i < seen.times.size(); ++i)
        EXPECT_EQ(static_cast<double>(seen.times[i]), std::floor(seen.timesOfLines[i]));
}

TEST(ThePhoneInRealTime, records_the_very_date_that_the_library_reads) {
    const auto& seen = aMinuteInRealTime();
    ASSERT_GT(seen.scheduled.size(), 2U);
    for (std::size_t i = 0; i < seen.scheduled.size(); ++i)
        EXPECT_EQ(seen.scheduled[i], seen.datesBefore[i] + 900);
}

TEST(ThePhoneInRealTime, records_a_wake_up_as_it_was_scheduled_and_lists_it_in_whole_seconds) {
    const auto& seen = aMinuteInRealTime();
    const auto hasFraction = [](double date) { return date != std::floor(date); };
    EXPECT_THAT(seen.scheduled, testing::Contains(testing::Truly(hasFraction)));
    // The monitor cancels all that the list shows. Each wake-up is cancelled once, so a cancelled
    // one has left the list.
    ASSERT_EQ(seen.cancelled.size() + 1, seen.scheduled.size());
    for (std::size_t i = 0; i < seen.cancelled.size(); ++i)
        EXPECT_EQ(seen.cancelled[i], std::floor(seen.scheduled[i]));
}

} // namespace

} // namespace noctara
