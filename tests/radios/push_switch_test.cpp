/// The push switch, which is a value in a file.
#include "radios/radios_lib.h"
#include "tests/a_night.h"

namespace noctara {

namespace {

using testing::ElementsAre;

const std::string pushPath =
    "/private/var/mobile/Library/Preferences/com.apple.persistentconnection-mcc.plist";
const std::string pushAnnounced = R"(notify_post ["com.apple.persistentconnection-mcc/Prefs"])";

std::string readPush(const std::string& result) {
    return "initWithContentsOfFile: [\"" + pushPath + "\"] -> " + result;
}

std::string writePush(const std::string& content, const std::string& result = "true") {
    return "writeToFile:atomically: [\"" + pushPath + "\"," + content + "] -> " + result;
}

class ThePushSwitch : public ANight {
protected:
    RadiosLib& onThePhone() {
        switchOn();
        own = std::make_unique<RadiosLib>(phone().platform());
        calls.clear();
        return *own;
    }

    /// The calls since the last look at them.
    std::vector<std::string> newCalls() {
        auto found = calls.calls();
        calls.clear();
        return found;
    }

    std::unique_ptr<RadiosLib> own;
};

TEST_F(ThePushSwitch, changes_its_file_and_tells_its_daemon_alone) {
    auto& radios = onThePhone();
    phone().files.writeByOthers(pushPath, {{"Other", "kept"}, {"PCEnablePush", 1}, {"Last", 2}});
    EXPECT_TRUE(radios.isPushEnabled());
    calls.clear();

    radios.setPushEnabled(false);
    const std::string before = R"({"Other":"kept","PCEnablePush":1,"Last":2})";
    EXPECT_THAT(newCalls(),
                ElementsAre(readPush(before), readPush(before),
                            writePush(R"({"Other":"kept","PCEnablePush":false,"Last":2})"),
                            pushAnnounced));
    EXPECT_FALSE(radios.isPushEnabled());

    radios.setPushEnabled(true);
    EXPECT_TRUE(radios.isPushEnabled());
    EXPECT_EQ(phone().files.content(pushPath).value,
              PropertyList(Dictionary{{"Other", "kept"}, {"PCEnablePush", true}, {"Last", 2}}));
}

TEST_F(ThePushSwitch, does_nothing_when_it_is_as_wanted) {
    for (const bool on : {true, false}) {
        scenario.radios.push = on;
        onThePhone().setPushEnabled(on);
        EXPECT_THAT(newCalls(), ElementsAre(readPush(on ? R"({"PCEnablePush":true})"
                                                        : R"({"PCEnablePush":false})")));
    }
}

TEST_F(ThePushSwitch, takes_a_missing_entry_for_off_and_adds_it) {
    auto& radios = onThePhone();
    phone().files.writeByOthers(pushPath, {{"Other", 1}});
    EXPECT_FALSE(radios.isPushEnabled());
    radios.setPushEnabled(true);
    EXPECT_THAT(calls.of({"writeToFile:atomically:"}),
                ElementsAre(writePush(R"({"Other":1,"PCEnablePush":true})")));
}

TEST_F(ThePushSwitch, takes_a_missing_file_for_off_writes_none_and_still_announces) {
    auto& radios = onThePhone();
    phone().files.remove(pushPath);
    EXPECT_FALSE(radios.isPushEnabled());
    calls.clear();

    radios.setPushEnabled(true);
    EXPECT_THAT(newCalls(), ElementsAre(readPush("null"), readPush("null"), pushAnnounced));
    EXPECT_FALSE(phone().files.content(pushPath).value);
}

TEST_F(ThePushSwitch, leaves_the_file_whole_when_it_cannot_be_written_and_still_announces) {
    auto& radios = onThePhone();
    phone().files.disk = DiskState::full;
    radios.setPushEnabled(false);
    EXPECT_THAT(calls.of({"writeToFile:atomically:", "notify_post"}),
                ElementsAre(writePush(R"({"PCEnablePush":false})", "false"), pushAnnounced));
    EXPECT_TRUE(radios.isPushEnabled());
}

TEST_F(ThePushSwitch, takes_a_damaged_file_for_a_missing_one) {
    auto& radios = onThePhone();
    phone().files.damage(pushPath);
    EXPECT_FALSE(radios.isPushEnabled());
    radios.setPushEnabled(true);
    EXPECT_THAT(calls.of({"writeToFile:atomically:", "notify_post"}), ElementsAre(pushAnnounced));
}

TEST_F(ThePushSwitch, goes_by_the_truth_of_whatever_the_entry_holds) {
    auto& radios = onThePhone();
    for (const PropertyList& on : {PropertyList(2), PropertyList(0.5), PropertyList("YES")}) {
        phone().files.writeByOthers(pushPath, {{"PCEnablePush", on}});
        EXPECT_TRUE(radios.isPushEnabled());
    }
    for (const PropertyList& off : {PropertyList(0), PropertyList("NO"), PropertyList(Array{1})}) {
        phone().files.writeByOthers(pushPath, {{"PCEnablePush", off}});
        EXPECT_FALSE(radios.isPushEnabled());
    }
}

} // namespace

} // namespace noctara
