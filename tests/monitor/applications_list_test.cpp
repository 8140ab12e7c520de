/// The list of applications to launch from the settings file, and the lock that guards it.
#include "tests/monitor/a_settings_file.h"

#include <future>
#include <mutex>
#include <thread>

namespace noctara {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class TheApplicationsList : public ASettingsFile {};

INSTANTIATE_TEST_SUITE_P(Kept, TheApplicationsList, testing::Values(Storage::memory, Storage::disk),
                         storageName);

TEST_P(TheApplicationsList, has_those_whose_prefix_matches_and_whose_value_is_true) {
    auto& monitor = holding(with({{"launch-app-X", true},
                                  {"launch-app-Y", false},
                                  {"Launch-app-Z", true},
                                  {"my-launch-app-V", true},
                                  {"launch-ap", true}}));
    monitor.reloadPreferences();
    EXPECT_THAT(monitor.applicationsToStart, ElementsAre("X"));
}

TEST_P(TheApplicationsList, has_one_empty_identifier_for_the_bare_prefix) {
    auto& monitor = holding(with({{"launch-app-", true}}));
    monitor._DEBUG_ = false;
    monitor.reloadPreferences();
    EXPECT_THAT(monitor.applicationsToStart, ElementsAre(""));
    EXPECT_THAT(calls.logged(), ElementsAre("This is an app=launch-app- adding to array",
                                            "1 apps to monitor", "app to monitor : "));
}

TEST_P(TheApplicationsList, is_in_the_order_of_the_file_whatever_stands_between) {
    auto& monitor = holding(Dictionary{{"launch-app-com.zulu", 1}, {"launch-app-no", 0}});
    change(with({{"launch-app-com.mike", "YES"},
                 {"launch-app-com.alpha", 0.5},
                 {"launch-app-nothing", Data{}},
                 {"launch-app-no-word", "no"}}));
    EXPECT_THAT(monitor.applicationsToStart, ElementsAre("com.zulu", "com.mike", "com.alpha"));
}

TEST_P(TheApplicationsList, is_logged_with_debug_off_too) {
    auto& monitor = holding(with(
        {{"launch-app-b", true}, {"launch-app-off", false}, {"launch-app-com.apple.a", true}}));
    monitor._DEBUG_ = false;
    monitor.reloadPreferences();
    EXPECT_THAT(calls.logged(), ElementsAre("This is an app=launch-app-b adding to array",
                                            "This is an app=launch-app-com.apple.a adding to array",
                                            "2 apps to monitor", "app to monitor : b",
                                            "app to monitor : com.apple.a"));
}

TEST_P(TheApplicationsList, is_rebuilt_from_nothing_at_each_load) {
    auto& monitor = holding(with({{"launch-app-one", true}, {"launch-app-two", true}}));
    monitor.reloadPreferences();
    monitor.reloadPreferences();
    EXPECT_THAT(monitor.applicationsToStart, ElementsAre("one", "two"));

    change({{"launch-app-one", false}, {"launch-app-three", true}});
    EXPECT_THAT(monitor.applicationsToStart, ElementsAre("two", "three"));

    phone().happens(SettingsRemoval{{"launch-app-two", "launch-app-three"}});
    EXPECT_THAT(monitor.applicationsToStart, IsEmpty());
}

TEST_P(TheApplicationsList, is_empty_after_the_file_was_made_from_nothing) {
    auto& monitor = holding(with({{"launch-app-one", true}}));
    monitor.reloadPreferences();
    ASSERT_THAT(monitor.applicationsToStart, ElementsAre("one"));
    phone().happens(SettingsFileChange{SettingsFileFault::missing});
    monitor.reloadPreferences();
    EXPECT_THAT(monitor.applicationsToStart, IsEmpty());
}

TEST_P(TheApplicationsList, stays_when_the_file_cannot_be_made) {
    auto& monitor = holding(with({{"launch-app-one", true}}));
    monitor.reloadPreferences();
    phone().happens(SettingsFileChange{SettingsFileFault::missing});
    phone().happens(DiskChange{DiskState::readOnly});
    monitor.reloadPreferences();
    EXPECT_THAT(monitor.applicationsToStart, ElementsAre("one"));
}

/// Does something whenever the monitor makes a call.
class Onlooker final : public PhoneObserver {
public:
    void called(const Call& call) override {
        std::string text(nameOf(call.operation));
        if (call.operation == Operation::NSLog)
            text = std::get<std::string_view>(call.arguments[0]);
        if (const auto act = onCall)
            act(text);
    }
    void happens(const Happening&) override {}

    std::function<void(const std::string&)> onCall;
};

/// A second thread walks the list; what it tells nobody looks at.
class TheListsLock : public testing::Test {
protected:
    TheListsLock() {
        scenario.settings = Dictionary{{"launch-app-one", true}};
        phone.emplace(scenario);
        phone->observe(onlooker);
        monitor = std::make_unique<NoctaraThread>(phone->platform());
    }

    ~TheListsLock() override {
        if (walker.joinable())
            walker.join();
    }

    std::future<void> walk() {
        if (walker.joinable())
            walker.join();
        std::packaged_task<void()> task([this] { monitor->startStopApplications(false); });
        auto done = task.get_future();
        walker = std::thread(std::move(task));
        return done;
    }

    bool walkIsPossible(std::chrono::milliseconds patience) {
        const auto ownOnCall = std::exchange(onlooker.onCall, nullptr);
        const bool possible = walk().wait_for(patience) == std::future_status::ready;
        onlooker.onCall = ownOnCall;
        return possible;
    }

    Scenario scenario;
    Onlooker onlooker;
    std::optional<SimulatedPhone> phone;
    std::unique_ptr<NoctaraThread> monitor;
    std::thread walker;
};

TEST_F(TheListsLock, is_free_while_the_file_is_read_and_written) {
    int looks = 0;
    onlooker.onCall = [&](const std::string& text) {
        if (HasFailure())
            return;
        if (text == "initWithContentsOfFile:" || text == "writeToFile:atomically:" ||
            text.starts_with("Noctara Enabled")) {
            ++looks;
            EXPECT_TRUE(walkIsPossible(10s)) << text;
        }
    };
    monitor->reloadPreferences();
    EXPECT_EQ(looks, 1 + 20 * 2 + 1);
}

TEST_F(TheListsLock, is_held_while_the_list_is_rebuilt_and_listed) {
    std::vector<std::string> lines;
    onlooker.onCall = [&](const std::string& text) {
        if (text == "Noctara parsing apps to monitor" || text.starts_with("This is an app") ||
            text == "1 apps to monitor" || text.starts_with("app to monitor"))
            lines.push_back(text);
    };
    monitor->reloadPreferences();
    ASSERT_EQ(lines.size(), 4U);
    for (const auto& line : lines) {
        std::future<void> walked;
        onlooker.onCall = [&](const std::string& text) {
            if (text == line && !walked.valid()) {
                onlooker.onCall = nullptr;
                walked = walk();
                EXPECT_EQ(walked.wait_for(50ms), std::future_status::timeout) << line;
            }
        };
        monitor->reloadPreferences();
        ASSERT_TRUE(walked.valid()) << line;
        EXPECT_EQ(walked.wait_for(10s), std::future_status::ready) << line;
        monitor->_DEBUG_ = true;
    }
}

TEST_F(TheListsLock, is_released_when_something_is_thrown_under_it) {
    onlooker.onCall = [](const std::string& text) {
        if (text.starts_with("This is an app"))
            throw std::runtime_error("the log is gone");
    };
    EXPECT_THROW(monitor->reloadPreferences(), std::runtime_error);
    if (!walkIsPossible(10s)) {
        // The walker waits for ever, and the monitor has to stay with it.
        walker.detach();
        static_cast<void>(monitor.release());
        FAIL() << "the lock is still held";
    }
}

TEST_F(TheListsLock, may_be_taken_again_by_the_thread_that_holds_it) {
    bool walked = false;
    onlooker.onCall = [&](const std::string& text) {
        if (text.starts_with("app to monitor")) {
            onlooker.onCall = nullptr;
            monitor->startStopApplications(false);
            walked = true;
        }
    };
    monitor->reloadPreferences();
    EXPECT_TRUE(walked);
}

} // namespace
} // namespace noctara
