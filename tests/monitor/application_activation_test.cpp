/// Bringing one application, or the home screen, to the front.
#include "tests/monitor/a_phone_with_applications.h"

namespace noctara {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class AnApplicationToActivate : public APhoneWithApplications {};

TEST_F(AnApplicationToActivate, is_not_launched_when_it_is_in_front_already) {
    installed(clockApp).running = installed(clockApp).front = true;
    list({});
    Application* const front = object(clockApp);
    EXPECT_FALSE(own->activateApplication(front));
    EXPECT_THAT(calls.calls(),
                ElementsAre(R"(objc_getClass ["SBApplicationController"] -> true)",
                            R"(_accessibilityFrontMostApplication -> "com.apple.mobiletimer")"));
}

TEST_F(AnApplicationToActivate, is_launched_by_its_icon_when_it_is_behind_another) {
    installed(mailApp).front = true;
    list({});
    EXPECT_TRUE(own->activateApplication(object(clockApp)));
    EXPECT_THAT(actions(), ElementsAre(R"(launch ["com.apple.mobiletimer"])"));
}

TEST_F(AnApplicationToActivate, counts_as_activated_without_an_icon) {
    installed(clockApp).icon = false;
    list({});
    EXPECT_TRUE(own->activateApplication(object(clockApp)));
    EXPECT_THAT(actions(), IsEmpty());
}

TEST_F(AnApplicationToActivate, counts_as_activated_without_an_icon_model) {
    list({});
    phone().process.removeClass("SBIconModel");
    EXPECT_TRUE(own->activateApplication(object(clockApp)));
    EXPECT_THAT(actions(), IsEmpty());
}

TEST_F(AnApplicationToActivate, is_launched_by_the_older_kind_of_icon_where_there_is_no_other) {
    list({});
    phone().applications.hasLeafIcons = false;
    EXPECT_TRUE(own->activateApplication(object(clockApp)));
    EXPECT_THAT(calls.of({"leafIconForIdentifier:", "iconForDisplayIdentifier:", "launch"}),
                ElementsAre(R"(iconForDisplayIdentifier: ["com.apple.mobiletimer"] -> true)",
                            R"(launch ["com.apple.mobiletimer"])"));
}

TEST_F(AnApplicationToActivate, is_launched_again_where_nobody_knows_what_is_in_front) {
    installed(clockApp).front = true;
    list({});
    phone().applications.hasFrontMostQuery = false;
    EXPECT_TRUE(own->activateApplication(object(clockApp)));
    EXPECT_THAT(actions(), ElementsAre(R"(launch ["com.apple.mobiletimer"])"));
}

TEST_F(AnApplicationToActivate, is_the_home_screen_when_none_is_given) {
    installed(clockApp).front = true;
    scenario.applications.push_back({"com.apple.springboard", "Home", true, true, false});
    list({});
    EXPECT_TRUE(own->activateApplication(nullptr));
    EXPECT_THAT(calls.of({"leafIconForIdentifier:", "launch"}),
                ElementsAre(R"(leafIconForIdentifier: ["com.apple.springboard"] -> true)",
                            R"(launch ["com.apple.springboard"])"));
}

TEST_F(AnApplicationToActivate, is_not_launched_when_it_is_the_home_screen_and_that_is_in_front) {
    list({});
    EXPECT_FALSE(own->activateApplication(nullptr));
    EXPECT_THAT(calls.of({"leafIconForIdentifier:"}), IsEmpty());
}

TEST_F(AnApplicationToActivate, is_launched_where_no_object_stands_for_the_home_screen) {
    list({});
    phone().applications.hasHomeScreenObject = false;
    EXPECT_TRUE(own->activateApplication(object(clockApp)));
    EXPECT_THAT(actions(), ElementsAre(R"(launch ["com.apple.mobiletimer"])"));
}

TEST_F(AnApplicationToActivate, is_none_at_all_where_no_object_stands_for_the_home_screen) {
    installed(clockApp).front = true;
    list({});
    phone().applications.hasHomeScreenObject = false;
    EXPECT_TRUE(own->activateApplication(nullptr));
    EXPECT_THAT(actions(), IsEmpty());
    EXPECT_EQ(phone().applications.front(), clockApp);
}

TEST_F(AnApplicationToActivate, is_none_and_in_front_already_where_nothing_is_in_front_either) {
    list({});
    phone().applications.hasHomeScreenObject = false;
    EXPECT_FALSE(own->activateApplication(nullptr));
    EXPECT_THAT(actions(), IsEmpty());
}

TEST_F(AnApplicationToActivate, on_top_is_known_where_the_phone_answers_for_it) {
    installed(clockApp).front = true;
    list({});
    Application* const front = object(clockApp);
    EXPECT_EQ(own->topApplication(), front);
    EXPECT_EQ(calls.count("_accessibilityFrontMostApplication"), 1u);
    calls.clear();
    phone().applications.hasFrontMostQuery = false;
    EXPECT_EQ(own->topApplication(), nullptr);
    EXPECT_EQ(calls.count("_accessibilityFrontMostApplication"), 0u);
}

TEST_F(AnApplicationToActivate, is_handed_back_as_it_came) {
    make();
    int anything = 0;
    EXPECT_EQ(own->activateApp(&anything), &anything);
    EXPECT_EQ(own->activateApp(nullptr), nullptr);
}

} // namespace
} // namespace noctara
