/// Applications that are launched when the sleep state begins and quit when it ends.
#include "tests/monitor/a_phone_with_applications.h"

#include <atomic>
#include <functional>
#include <thread>

namespace noctara {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Does something at every call of one operation.
class AtACall final : public PhoneObserver {
public:
    AtACall(Operation awaited, std::function<void()> action) :
        operation(awaited), does(std::move(action)) {}

    void called(const Call& call) override {
        if (call.operation == operation)
            does();
    }
    void happens(const Happening&) override {}

private:
    Operation operation;
    std::function<void()> does;
};

class ListedApplications : public APhoneWithApplications {
protected:
    /// Ends a thread that is done within five seconds. Otherwise it is left to wait for ever, with
    /// the monitor that it waits for.
    bool ends(std::thread& thread, const std::atomic<bool>& done) {
        for (int i = 0; i < 500 && !done; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        if (done) {
            thread.join();
        } else {
            thread.detach();
            static_cast<void>(own.release());
        }
        return done;
    }
};

TEST_F(ListedApplications, none_are_neither_launched_nor_quit_nor_logged) {
    list({});
    own->startStopApplications(true);
    own->startStopApplications(false);
    EXPECT_THAT(actions(), IsEmpty());
    EXPECT_THAT(calls.of({"process"}), IsEmpty());
    EXPECT_THAT(calls.logged(), IsEmpty());
}

TEST_F(ListedApplications, not_running_are_launched_by_their_icons) {
    list({clockApp});
    own->startStopApplications(true);
    EXPECT_THAT(calls.calls(),
                ElementsAre(R"(objc_getClass ["SBApplicationController"] -> true)",
                            R"(allApplications -> ["com.apple.mobilemail",)"
                            R"("com.apple.mobiletimer","com.example.SleepRecorder"])",
                            R"(process ["com.apple.mobiletimer"] -> false)",
                            R"(objc_getClass ["SBApplicationController"] -> true)",
                            R"(_accessibilityFrontMostApplication -> null)",
                            R"(objc_getClass ["SBIconModel"] -> true)",
                            R"(leafIconForIdentifier: ["com.apple.mobiletimer"] -> true)",
                            R"(launch ["com.apple.mobiletimer"])"));
    EXPECT_TRUE(phone().applications.isRunning(clockApp));
    EXPECT_EQ(phone().applications.front(), clockApp);
}

TEST_F(ListedApplications, already_running_come_to_the_front_without_their_icons) {
    installed(clockApp).running = true;
    list({clockApp});
    own->startStopApplications(true);
    EXPECT_THAT(calls.of({"process", "activate", "leafIconForIdentifier:", "launch"}),
                ElementsAre(R"(process ["com.apple.mobiletimer"] -> true)",
                            R"(activate ["com.apple.mobiletimer"])"));
}

TEST_F(ListedApplications, running_in_front_are_still_activated) {
    installed(clockApp).running = installed(clockApp).front = true;
    list({clockApp});
    own->startStopApplications(true);
    EXPECT_THAT(actions(), ElementsAre(R"(activate ["com.apple.mobiletimer"])"));
}

TEST_F(ListedApplications, are_asked_to_quit_and_then_killed) {
    installed(clockApp).running = true;
    list({clockApp});
    own->startStopApplications(false);
    EXPECT_THAT(calls.calls(),
                ElementsAre(R"(objc_getClass ["SBApplicationController"] -> true)",
                            R"(allApplications -> ["com.apple.mobilemail",)"
                            R"("com.apple.mobiletimer","com.example.SleepRecorder"])",
                            R"(resumeToQuit ["com.apple.mobiletimer"])",
                            R"(kill ["com.apple.mobiletimer"])"));
    EXPECT_FALSE(phone().applications.isRunning(clockApp));
}

TEST_F(ListedApplications, not_running_are_quit_all_the_same) {
    list({clockApp});
    own->startStopApplications(false);
    EXPECT_THAT(actions(), ElementsAre(R"(resumeToQuit ["com.apple.mobiletimer"])",
                                       R"(kill ["com.apple.mobiletimer"])"));
}

TEST_F(ListedApplications, listed_twice_are_launched_once) {
    list({clockApp, clockApp});
    own->startStopApplications(true);
    EXPECT_THAT(actions(), ElementsAre(R"(launch ["com.apple.mobiletimer"])"));
    EXPECT_THAT(calls.logged(), ElementsAre("Noctara Launching app displayName=Clock"));
}

TEST_F(ListedApplications, listed_twice_are_quit_once) {
    list({clockApp, mailApp, clockApp});
    own->startStopApplications(false);
    EXPECT_THAT(calls.of({"kill"}), ElementsAre(R"(kill ["com.apple.mobilemail"])",
                                                R"(kill ["com.apple.mobiletimer"])"));
}

TEST_F(ListedApplications, are_launched_in_the_order_of_the_phone_and_not_of_the_list) {
    list({recorderApp, clockApp, mailApp});
    own->startStopApplications(true);
    EXPECT_THAT(actions(), ElementsAre(R"(launch ["com.apple.mobilemail"])",
                                       R"(launch ["com.apple.mobiletimer"])",
                                       R"(launch ["com.example.SleepRecorder"])"));
}

TEST_F(ListedApplications, that_are_not_installed_are_passed_over_without_a_word) {
    list({"com.example.gone", clockApp});
    own->startStopApplications(true);
    EXPECT_THAT(actions(), ElementsAre(R"(launch ["com.apple.mobiletimer"])"));
    EXPECT_THAT(calls.logged(), ElementsAre("Noctara Launching app displayName=Clock"));
}

TEST_F(ListedApplications, are_found_by_their_whole_identifier_in_its_own_case) {
    list({"com.apple.mobiletime", "com.apple.mobiletimer2", "com.apple.MobileTimer", ""});
    own->startStopApplications(true);
    own->startStopApplications(false);
    EXPECT_THAT(actions(), IsEmpty());
}

TEST_F(ListedApplications, are_logged_by_name_before_they_are_touched) {
    list({clockApp, recorderApp});
    own->startStopApplications(true);
    own->startStopApplications(false);
    EXPECT_THAT(calls.of({"NSLog", "process", "launch", "resumeToQuit", "kill"}),
                ElementsAre(R"(NSLog ["Noctara Launching app displayName=Clock"])",
                            R"(process ["com.apple.mobiletimer"] -> false)",
                            R"(launch ["com.apple.mobiletimer"])",
                            R"(NSLog ["Noctara Launching app displayName=Sleep Recorder"])",
                            R"(process ["com.example.SleepRecorder"] -> false)",
                            R"(launch ["com.example.SleepRecorder"])",
                            R"(NSLog ["Noctara Killing app displayName=Clock"])",
                            R"(resumeToQuit ["com.apple.mobiletimer"])",
                            R"(kill ["com.apple.mobiletimer"])",
                            R"(NSLog ["Noctara Killing app displayName=Sleep Recorder"])",
                            R"(resumeToQuit ["com.example.SleepRecorder"])",
                            R"(kill ["com.example.SleepRecorder"])"));
}

TEST_F(ListedApplications, are_launched_and_quit_without_a_word_with_debug_off) {
    list({clockApp});
    own->_DEBUG_ = false;
    own->startStopApplications(true);
    own->startStopApplications(false);
    EXPECT_EQ(actions().size(), 3u);
    EXPECT_THAT(calls.logged(), IsEmpty());
}

TEST_F(ListedApplications, without_an_icon_are_simply_not_launched) {
    installed(clockApp).icon = false;
    list({clockApp, recorderApp});
    own->startStopApplications(true);
    EXPECT_THAT(actions(), ElementsAre(R"(launch ["com.example.SleepRecorder"])"));
    EXPECT_FALSE(phone().applications.isRunning(clockApp));
}

TEST_F(ListedApplications, are_left_alone_on_a_phone_without_an_application_controller) {
    list({clockApp});
    phone().process.removeClass("SBApplicationController");
    own->startStopApplications(true);
    EXPECT_THAT(calls.calls(),
                ElementsAre(R"(objc_getClass ["SBApplicationController"] -> false)"));
}

TEST_F(ListedApplications, are_no_longer_walked_once_another_one_is_installed_meanwhile) {
    list({mailApp, clockApp, recorderApp});
    AtACall installer(Operation::launch, [this] {
        phone().applications.install({"com.example.new", "New", false, true, false});
    });
    phone().observe(installer);
    EXPECT_THROW(own->startStopApplications(true), std::logic_error);
    EXPECT_THAT(actions(), ElementsAre(R"(launch ["com.apple.mobilemail"])"));
}

TEST_F(ListedApplications, can_be_walked_by_another_thread_after_a_walk_that_failed) {
    list({mailApp});
    bool installing = true;
    AtACall installer(Operation::launch, [&] {
        if (installing)
            phone().applications.install({"com.example.new", "New", false, true, false});
    });
    phone().observe(installer);
    ASSERT_THROW(own->startStopApplications(true), std::logic_error);

    installing = false;
    std::atomic<bool> walked = false;
    std::thread other([&] {
        own->startStopApplications(false);
        walked = true;
    });
    ASSERT_TRUE(ends(other, walked)) << "the failed walk kept the lock";
    EXPECT_THAT(calls.of({"kill"}), ElementsAre(R"(kill ["com.apple.mobilemail"])"));
}

TEST_F(ListedApplications, are_not_rebuilt_by_another_thread_during_a_walk) {
    list({clockApp});
    std::thread other;
    std::atomic<bool> reloaded = false;
    AtACall reload(Operation::launch, [&] {
        other = std::thread([&] {
            own->reloadPreferences();
            reloaded = true;
        });
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        EXPECT_FALSE(reloaded);
        EXPECT_THAT(own->applicationsToStart, ElementsAre(clockApp));
    });
    phone().observe(reload);
    own->startStopApplications(true);
    ASSERT_TRUE(other.joinable());
    ASSERT_TRUE(ends(other, reloaded)) << "the walk kept the lock";
    EXPECT_THAT(own->applicationsToStart, IsEmpty());
}

/// A phone with one application, which does something when it is asked for its identifier. Its
/// identifier and its name may be absent.
class CuriousApplication final : public Applications,
                                 public ApplicationController,
                                 public Application {
public:
    ApplicationController* sharedController(ClassRef) override { return this; }
    IconModel* sharedIconModel(ClassRef) override { return nullptr; }
    bool respondsToFrontMostApplication() override { return false; }
    Application* frontMostApplication() override { return nullptr; }
    void allApplications(const std::function<void(Application&)>& visit) override { visit(*this); }
    Application* springBoard() override { return nullptr; }
    std::optional<std::string> displayIdentifier() override {
        if (whenAsked)
            whenAsked();
        return identifier;
    }
    std::optional<std::string> displayName() override { return name; }
    bool hasProcess() override { return true; }
    void activate() override { ++activations; }
    void resumeToQuit() override {}
    void kill() override { ++kills; }

    std::optional<std::string> identifier = "com.example.other";
    std::optional<std::string> name = "Curious";
    std::function<void()> whenAsked;
    int activations = 0;
    int kills = 0;
};

TEST_F(ListedApplications, rebuilt_by_the_walking_thread_itself_end_the_walk) {
    switchOn();
    CuriousApplication application;
    Platform altered = phone().platform();
    altered.applications = &application;
    own = std::make_unique<NoctaraThread>(altered);
    phone().files.writeByOthers(settingsFilePath, settings);
    own->applicationsToStart = {clockApp, recorderApp};
    application.whenAsked = [this] { own->reloadPreferences(); };
    EXPECT_THROW(own->startStopApplications(true), std::logic_error);
    EXPECT_THAT(own->applicationsToStart, IsEmpty());
}

class TheOnlyApplication : public APhoneWithApplications {
protected:
    void list(std::vector<std::string> identifiers) {
        switchOn();
        Platform altered = phone().platform();
        altered.applications = &application;
        own = std::make_unique<NoctaraThread>(altered);
        own->applicationsToStart = std::move(identifiers);
    }

    CuriousApplication application;
};

TEST_F(TheOnlyApplication, without_a_name_is_logged_as_null) {
    application.name = std::nullopt;
    list({"com.example.other"});
    own->startStopApplications(true);
    own->startStopApplications(false);
    EXPECT_EQ(application.activations, 1);
    EXPECT_EQ(application.kills, 1);
    EXPECT_THAT(calls.logged(), ElementsAre("Noctara Launching app displayName=(null)",
                                            "Noctara Killing app displayName=(null)"));
}

TEST_F(TheOnlyApplication, without_an_identifier_is_not_even_found_by_an_empty_one) {
    application.identifier = std::nullopt;
    list({"", clockApp});
    own->startStopApplications(true);
    own->startStopApplications(false);
    EXPECT_EQ(application.activations, 0);
    EXPECT_EQ(application.kills, 0);
    EXPECT_THAT(calls.logged(), IsEmpty());
}

TEST_F(TheOnlyApplication, with_an_empty_identifier_is_found_by_an_empty_one) {
    application.identifier = "";
    list({""});
    own->startStopApplications(true);
    EXPECT_EQ(application.activations, 1);
}

// Over a night.

TEST_F(ANight, launches_its_applications_and_quits_them_in_the_morning) {
    scenario.applications = {{clockApp, "Clock", false, true, false},
                             {recorderApp, "Sleep Recorder", true, true, false},
                             {mailApp, "Mail", true, true, false}};
    settings.set("launch-app-" + clockApp, true);
    settings.set("launch-app-" + recorderApp, true);
    settings.set("launch-app-" + mailApp, false);
    begin();
    fallAsleep();
    EXPECT_THAT(calls.of({"activate", "launch", "setIsInAirplaneMode:"}),
                ElementsAre(R"(launch ["com.apple.mobiletimer"])",
                            R"(activate ["com.example.SleepRecorder"])",
                            "setIsInAirplaneMode: [true]"));
    calls.clear();
    lies(InHand);
    playReadings(3);
    EXPECT_THAT(calls.of({"resumeToQuit", "kill", "setIsInAirplaneMode:"}),
                ElementsAre(R"(resumeToQuit ["com.apple.mobiletimer"])",
                            R"(kill ["com.apple.mobiletimer"])",
                            R"(resumeToQuit ["com.example.SleepRecorder"])",
                            R"(kill ["com.example.SleepRecorder"])",
                            "setIsInAirplaneMode: [false]"));
    EXPECT_TRUE(phone().applications.isRunning(mailApp));
}

} // namespace
} // namespace noctara
