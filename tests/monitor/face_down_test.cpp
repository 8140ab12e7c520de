/// One reading of the accelerometer: its calls to the phone, its result and its log lines.
#include "tests/a_night.h"

#include <cmath>
#include <limits>

namespace noctara {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class AReading : public AMonitor {
protected:
    AReading() {
        make();
        own->screenDown = true;
        own->sensitivity = 0;
        own->_DEBUG_ = false;
        calls.clear();
    }

    bool read() {
        bool answer = false;
        phone().asMonitorThread([&] { answer = own->checkState(); });
        return answer;
    }

    bool readAt(double x, double y, double z) {
        phone().motion.source = [=] { return Acceleration{x, y, z}; };
        return read();
    }

    bool readTilted(double angle) { return readAt(std::sin(angle), 0, std::cos(angle)); }
};

TEST_F(AReading, starts_the_sensor_waits_a_second_reads_once_and_stops_it) {
    lies(ScreenDown);
    calls.clear();
    const double before = phone().clock.monotonic;
    EXPECT_TRUE(read());
    EXPECT_THAT(calls.calls(),
                ElementsAre("startAccelerometerUpdates", "setAccelerometerUpdateInterval: [0.2]",
                            "sleep [1]", "deviceMotion -> null",
                            "accelerometerData -> [0.0,0.0,1.0]", "sleep [0]",
                            "stopAccelerometerUpdates"));
    EXPECT_EQ(phone().clock.monotonic - before, 1);
    for (const auto& made : calls.lines)
        EXPECT_EQ(made.thread, "monitor") << made.text;
}

TEST_F(AReading, takes_the_sample_after_the_second_of_waiting) {
    lies(InHand);
    const double start = phone().clock.monotonic;
    phone().motion.source = [&] {
        return phone().clock.monotonic >= start + 1 ? Acceleration{0, 0, 1} : Acceleration{};
    };
    EXPECT_TRUE(read());
}

TEST_F(AReading, of_a_phone_with_the_screen_down_depends_on_the_wanted_posture) {
    lies(ScreenDown);
    EXPECT_TRUE(read());
    own->screenDown = false;
    EXPECT_FALSE(read());
}

TEST_F(AReading, of_a_phone_with_the_screen_up_depends_on_the_wanted_posture) {
    lies(ScreenUp);
    EXPECT_FALSE(read());
    own->screenDown = false;
    EXPECT_TRUE(read());
}

TEST_F(AReading, of_a_phone_in_the_hand_in_a_pocket_or_moving_is_negative) {
    for (const NamedPosture posture : {InHand, InPocket, Moving})
        for (const bool screenDown : {true, false}) {
            own->screenDown = screenDown;
            lies(posture);
            EXPECT_FALSE(read()) << wordOf(postureWords, posture);
        }
}

TEST_F(AReading, of_a_vector_not_about_one_g_is_negative) {
    EXPECT_FALSE(readAt(0, 0, 1.1));
    EXPECT_FALSE(readAt(0, 0, 0.9));
    EXPECT_TRUE(readAt(0, 0, 1.05));
    EXPECT_TRUE(readAt(0, 0, 0.95));
    own->screenDown = false;
    EXPECT_FALSE(readAt(0, 0, -1.1));
    EXPECT_FALSE(readAt(0, 0, -0.9));
    EXPECT_TRUE(readAt(0, 0, -1.05));
}

TEST_F(AReading, of_the_zero_vector_is_negative) {
    EXPECT_FALSE(readAt(0, 0, 0));
    own->screenDown = false;
    EXPECT_FALSE(readAt(0, 0, 0));
}

TEST_F(AReading, without_a_sample_is_negative_and_logged_as_the_zero_vector) {
    lies(None);
    own->_DEBUG_ = true;
    calls.clear();
    EXPECT_FALSE(read());
    EXPECT_THAT(calls.of({"accelerometerData"}), ElementsAre("accelerometerData -> null"));
    EXPECT_EQ(calls.logged().front(), "Noctara : angle du device = 0.000000 rad -> 0.000000°, "
                                      "norme du vecteur = 0.000000");
    own->screenDown = false;
    EXPECT_FALSE(read());
}

TEST_F(AReading, without_a_motion_manager_waits_and_is_negative) {
    lies(ScreenDown);
    own->motionManager = nullptr;
    calls.clear();
    EXPECT_FALSE(read());
    EXPECT_THAT(calls.calls(), ElementsAre("sleep [1]", "sleep [0]"));
}

TEST_F(AReading, at_a_slight_tilt_depends_on_the_sensitivity) {
    EXPECT_TRUE(readTilted(0.2));
    own->sensitivity = 1;
    EXPECT_FALSE(readTilted(0.2));
    EXPECT_TRUE(readTilted(0.1));
    own->screenDown = false;
    EXPECT_TRUE(readTilted(3.05));
    EXPECT_FALSE(readTilted(3.02));
}

TEST_F(AReading, at_sensitivity_minus_one_is_positive_in_any_posture_at_rest) {
    own->sensitivity = -1;
    for (const bool screenDown : {true, false}) {
        own->screenDown = screenDown;
        for (const NamedPosture posture : {ScreenDown, ScreenUp, InHand, InPocket}) {
            lies(posture);
            EXPECT_TRUE(read()) << wordOf(postureWords, posture);
        }
        lies(Moving);
        EXPECT_FALSE(read());
    }
}

TEST_F(AReading, at_a_sensitivity_below_minus_one_is_never_positive) {
    for (const std::int32_t sensitivity : {-2, -100, std::numeric_limits<std::int32_t>::min(),
                                           std::numeric_limits<std::int32_t>::max()})
        for (const bool screenDown : {true, false})
            for (const NamedPosture posture : {ScreenDown, ScreenUp}) {
                own->sensitivity = sensitivity;
                own->screenDown = screenDown;
                lies(posture);
                EXPECT_FALSE(read()) << sensitivity << ' ' << wordOf(postureWords, posture);
            }
}

TEST_F(AReading, of_what_is_no_number_is_negative) {
    constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
    own->sensitivity = -1;
    EXPECT_FALSE(readAt(notANumber, 0, 1));
    EXPECT_FALSE(readAt(0, 0, std::numeric_limits<double>::infinity()));
}

TEST_F(AReading, remembers_nothing_of_the_one_before) {
    for (int round = 0; round < 3; ++round) {
        EXPECT_TRUE(readAt(0, 0, 1));
        EXPECT_FALSE(readAt(0, 1, 0));
    }
}

TEST_F(AReading, logs_nothing_with_debug_off) {
    EXPECT_TRUE(readAt(0, 0, 1));
    EXPECT_THAT(calls.logged(), IsEmpty());
}

TEST_F(AReading, logs_its_numbers_with_debug_on) {
    own->_DEBUG_ = true;
    own->sensitivity = 5;
    readAt(0, -0.6, -0.8);
    EXPECT_THAT(calls.logged(),
                ElementsAre("Noctara : angle du device = 2.498092 rad -> 143.130100°, norme du "
                            "vecteur = 1.000000",
                            "Noctara : angle / Z axis : 2.498", "Noctara : vector length : 1.000",
                            "Noctara : delta angle = 0.0000",
                            "Noctara : tolerance = 0.036667 rad, 2.101°"));
}

TEST_F(AReading, logs_the_sample_before_the_sensor_stops_and_all_else_after) {
    own->_DEBUG_ = true;
    readAt(0, 0, 1);
    std::vector<std::string> order;
    for (const auto& made : calls.lines)
        order.push_back(made.operation);
    EXPECT_THAT(order, ElementsAre("startAccelerometerUpdates", "setAccelerometerUpdateInterval:",
                                   "sleep", "deviceMotion", "accelerometerData", "NSLog", "sleep",
                                   "stopAccelerometerUpdates", "NSLog", "NSLog", "NSLog", "NSLog"));
}

TEST_F(AReading, logs_degrees_of_the_rounded_pi) {
    own->_DEBUG_ = true;
    readAt(0, 0, -1);
    // With all digits of pi it would be 180.000000.
    EXPECT_EQ(calls.logged().front(), "Noctara : angle du device = 3.141593 rad -> 179.999997°, "
                                      "norme du vecteur = 1.000000");
}

TEST_F(AReading, logs_the_tolerance_of_each_sensitivity) {
    own->_DEBUG_ = true;
    const std::vector<std::pair<std::int32_t, std::string>> expected{
        {0, "0.220000 rad, 12.605°"}, {1, "0.110000 rad, 6.303°"},     {2, "0.073333 rad, 4.202°"},
        {3, "0.055000 rad, 3.151°"},  {4, "0.044000 rad, 2.521°"},     {9, "0.022000 rad, 1.261°"},
        {-1, "inf rad, inf°"},        {-2, "-0.220000 rad, -12.605°"},
    };
    for (const auto& [sensitivity, text] : expected) {
        own->sensitivity = sensitivity;
        calls.clear();
        readAt(0, 0, 1);
        EXPECT_EQ(calls.logged().back(), "Noctara : tolerance = " + text);
    }
}

TEST_F(AReading, of_a_sample_of_any_posture_logs_a_difference_of_zero) {
    own->_DEBUG_ = true;
    for (const NamedPosture posture : {ScreenDown, ScreenUp, InHand, Moving, None}) {
        calls.clear();
        lies(posture);
        read();
        EXPECT_TRUE(calls.hasLogged("Noctara : delta angle = 0.0000"))
            << wordOf(postureWords, posture);
    }
}

TEST_F(AReading, of_what_is_no_number_logs_the_difference_of_the_limits) {
    own->_DEBUG_ = true;
    readAt(std::numeric_limits<double>::quiet_NaN(), 0, 1);
    EXPECT_TRUE(calls.hasLogged("Noctara : delta angle = 800.0000"));
}

class AReadingOfDeviceMotion : public AReading {
protected:
    AReadingOfDeviceMotion() {
        scenario.phone.deviceMotion = true;
        own.reset();
        make();
        own->screenDown = true;
        own->sensitivity = 0;
        calls.clear();
    }
};

TEST_F(AReadingOfDeviceMotion, is_always_negative) {
    for (const std::int32_t sensitivity : {0, -1})
        for (const bool screenDown : {true, false})
            for (const NamedPosture posture : {ScreenDown, ScreenUp, InHand}) {
                own->sensitivity = sensitivity;
                own->screenDown = screenDown;
                lies(posture);
                EXPECT_FALSE(read()) << wordOf(postureWords, posture);
            }
    EXPECT_THAT(calls.of({"accelerometerData"}), IsEmpty());
}

TEST_F(AReadingOfDeviceMotion, logs_the_z_component_and_a_length_of_zero) {
    own->_DEBUG_ = true;
    readAt(0, -0.6, -0.8);
    EXPECT_THAT(calls.logged(),
                ElementsAre("Noctara : angle / Z axis : -0.800", "Noctara : vector length : 0.000",
                            "Noctara : delta angle = 0.0000",
                            "Noctara : tolerance = 0.220000 rad, 12.605°"));
}

TEST_F(ANight, keeps_the_sensor_off_between_readings) {
    begin();
    playFor(600);
    const auto switched = calls.of({"startAccelerometerUpdates", "stopAccelerometerUpdates"});
    ASSERT_GT(switched.size(), 10U);
    for (std::size_t i = 0; i < switched.size(); ++i)
        EXPECT_EQ(switched[i],
                  i % 2 == 0 ? "startAccelerometerUpdates" : "stopAccelerometerUpdates");
}

} // namespace
} // namespace noctara
