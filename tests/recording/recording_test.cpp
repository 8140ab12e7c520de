/// Valid and invalid recordings, read as readings in the monitor's axes and units.
#include "recording/recording_file.h"

#include "input/bad_input.h"
#include "tests/recording/a_recording.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace noctara {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::StartsWith;

TEST_F(ARecording, with_decimal_commas_is_read_by_column_name) {
    expectTiltedScreenUp(read("time;X_value;Y_value;Z_value\n"
                              "0,5;0,980665;0,0;9,80665\n"
                              "0,7;0,980665;0,0;9,80665\n"),
                         0.2);
    EXPECT_EQ(complaints.str(), "");
}

TEST_F(ARecording, of_an_android_phone_is_turned_into_the_phones_own_axes) {
    const Recording recording = read("time,x,y,z\n0,0.980665,-1.96133,9.80665\n");
    expectReading(recording.samples[0].acceleration, -0.1, 0.2, -1);
}

TEST_F(ARecording, in_g_is_taken_as_it_is) {
    const Recording recording = read("time,x,y,z\n0,0.1,-0.2,-1\n");
    expectReading(recording.samples[0].acceleration, 0.1, -0.2, -1);
}

TEST_F(ARecording, in_thousandths_of_g_is_scaled) {
    const Recording recording = read("time,x,y,z\n0,100,-200,-1000\n");
    expectReading(recording.samples[0].acceleration, 0.1, -0.2, -1);
}

TEST_F(ARecording, follows_what_the_user_says_against_its_headings_and_numbers) {
    const RecordingOptions options{.unit = AccelerationUnit::metresPerSecondSquared,
                                   .axes = AxisConvention::ios,
                                   .rate = 50.0};
    const Recording recording = read("time (ms),x (g),y (g),z (g)\n"
                                     "7,0.980665,0,-0.980665\n"
                                     "5,0.980665,0,-0.980665\n",
                                     options);
    ASSERT_EQ(recording.samples.size(), 2U);
    expectReading(recording.samples[1].acceleration, 0.1, 0, -0.1);
    EXPECT_DOUBLE_EQ(recording.samples[1].seconds, 0.02);
    EXPECT_THAT(recording.remarks, Contains(HasSubstr("as --unit says")));
    EXPECT_THAT(recording.remarks, Contains(HasSubstr("as --axes says")));
    EXPECT_THAT(recording.remarks, Contains(HasSubstr("as --rate says")));
}

TEST_F(ARecording, says_what_was_assumed_and_which_option_changes_it) {
    const Recording recording = read("time,x,y,z\n0,0,0,9.8\n0.1,0,0,9.8\n");
    EXPECT_THAT(recording.remarks, Contains("x, y, z: \"x\", \"y\", \"z\""));
    EXPECT_THAT(recording.remarks, Contains("time: \"time\", seconds, told from its steps; "
                                            "--time-unit says otherwise"));
    EXPECT_THAT(recording.remarks, Contains("unit: m/s², told from the lengths (median 9.8); "
                                            "--unit says otherwise"));
    EXPECT_THAT(recording.remarks, Contains("axes: Android's (screen up reads z = +1 g), as usual "
                                            "with this unit; --axes ios says otherwise"));
}

TEST_F(ARecording, prefers_the_raw_accelerometer_whatever_the_order) {
    const Recording recording =
        read("time,gravity_x,gravity_y,gravity_z,accelerometer_x,accelerometer_y,accelerometer_z,"
             "x,y,z\n0,0,0,1,0.1,0.2,-1,5,5,5\n");
    expectReading(recording.samples[0].acceleration, 0.1, 0.2, -1);
}

TEST_F(ARecording, tells_the_unit_of_unnamed_times_from_their_steps) {
    struct Case {
        const char* first;
        const char* second;
        double seconds;
    };
    for (const Case& times :
         {Case{"0", "0.01", 0.01}, Case{"0", "10", 0.01},
          Case{"1393709400000", "1393709400020", 0.02}, Case{"0", "10000", 0.01},
          Case{"51000000000000", "51000005000000", 0.005},
          Case{"1393709400000000000", "1393709400500000000", 0.5}}) {
        SCOPED_TRACE(times.second);
        const Recording recording = read(std::string("time,x,y,z\n") + times.first + ",0,0,1\n" +
                                         times.second + ",0,0,1\n");
        EXPECT_NEAR(recording.samples[1].seconds, times.seconds, 1e-6);
    }
}

TEST_F(ARecording, tells_the_unit_of_unnamed_times_from_the_usual_step) {
    std::string text = "time,x,y,z\n";
    for (int i = 0; i < 20; ++i)
        text += std::to_string(i < 10 ? i : i + 3600) + ",0,0,1\n";
    EXPECT_NEAR(read(text).samples.back().seconds, 3619, 1e-6) << "with a gap of an hour";

    text = "time,x,y,z\n";
    for (int i = 0; i < 20; ++i)
        text += std::to_string(5 * i) + ",0,0,1\n";
    EXPECT_NEAR(read(text).samples.back().seconds, 95, 1e-6) << "one reading every five seconds";

    text = "time,x,y,z\n";
    for (int i = 0; i < 200; ++i)
        text += std::to_string(5 * i + i % 2) + ",0,0,1\n";
    EXPECT_NEAR(read(text).samples.back().seconds, 0.996, 1e-6)
        << "uneven steps are those of a fast logger in milliseconds";

    EXPECT_NEAR(read("time,x,y,z\n1393709400,0,0,1\n1393709420,0,0,1\n").samples[1].seconds, 20,
                1e-6)
        << "the first time is a date in seconds";
}

TEST_F(ARecording, takes_the_unit_of_its_times_from_the_user_or_the_heading) {
    const std::string rows = ",x,y,z\n0,0,0,1\n5,0,0,1\n";
    const RecordingOptions options{.timeUnit = findUnitOfTime("ms")};
    const Recording chosen = read("time (s)" + rows, options);
    EXPECT_NEAR(chosen.samples[1].seconds, 0.005, 1e-9);
    EXPECT_THAT(chosen.remarks, Contains("time: \"time (s)\", milliseconds, as --time-unit says"));
    for (const char* heading :
         {"timestamp_ms", "time (ms)", "Time since start in ms", "elapsedMilliseconds"})
        EXPECT_NEAR(read(heading + rows).samples[1].seconds, 0.005, 1e-9) << heading;
    EXPECT_NEAR(read("time_us" + rows).samples[1].seconds, 5e-6, 1e-12);
    EXPECT_NEAR(read("time [\u00B5s]" + rows).samples[1].seconds, 5e-6, 1e-12);
}

TEST_F(ARecording, reads_times_of_day_across_midnight) {
    const Recording recording = read("time,x,y,z\n"
                                     "23:59:59.250,0,0,-1\n"
                                     "23:59:59.750,0,0,-1\n"
                                     "0:00:00.250,0,0,-1\n"
                                     "00:00:01,0,0,-1\n"
                                     "24:00:01,0,0,-1\n"
                                     "00:00:01.5x,0,0,-1\n");
    ASSERT_EQ(recording.samples.size(), 4U);
    EXPECT_NEAR(recording.samples[2].seconds, 1, 1e-6);
    EXPECT_NEAR(recording.samples[3].seconds, 1.75, 1e-6);
    EXPECT_THAT(recording.remarks, Contains("time: \"time\", times of day; --rate HZ says "
                                            "otherwise"));
    EXPECT_THAT(complaintLines(),
                Contains(":6: the time is not a time of day: \"24:00:01\"; the line is skipped"));
    EXPECT_EQ(read("time;x;y;z\n1:02:03,5;0;0;1\n1:02:03:750;0;0;1\n").samples[1].seconds, 0.25);
}

TEST_F(ARecording, keeps_what_follows_after_the_clock_was_set_back) {
    const Recording recording = read("time,x,y,z\n"
                                     "100,0,0,-1\n"
                                     "101,0,0,-1\n"
                                     "102,0.1,0,-1\n"
                                     "50,0.2,0,-1\n"
                                     "51,0.3,0,-1\n"
                                     "52,0.4,0,-1\n");
    ASSERT_EQ(recording.samples.size(), 6U);
    for (std::size_t i = 0; i < 6; ++i)
        EXPECT_NEAR(recording.samples[i].seconds, static_cast<double>(i), 1e-9);
    EXPECT_NEAR(recording.samples[3].acceleration.x, 0.2, 1e-9);
    EXPECT_EQ(complaints.str(), "");
    EXPECT_THAT(recording.remarks, Contains("the clock is set back once: the readings after it "
                                            "follow one step after those before it"));
}

TEST_F(ARecording, in_memory_has_the_summary_of_the_file) {
    const std::string setBack = "time,x,y,z\n100,0,0,-1\n0.05,0,0,-1\n0.55,0,0,-1\n"
                                "0.60,0,0,-1\n1.75,0,0,-1\n";
    const RecordingSummary inMemory = read(setBack).summary();
    const RecordingFile file(path, {}, complaints);
    EXPECT_EQ(inMemory.samples, 5U);
    EXPECT_EQ(inMemory.lastSeconds, file.summary().lastSeconds);
    EXPECT_EQ(inMemory.medianStep, file.summary().medianStep);
    EXPECT_EQ(inMemory.remarks, file.summary().remarks);
    EXPECT_EQ(inMemory.axesAreAssumed, file.summary().axesAreAssumed);
}

TEST_F(ARecording, keeps_the_steps_after_a_time_that_is_much_larger) {
    const Recording recording = read("time (s),x,y,z\n1669000000010000000,0,0,-1\n0.90,0,0,-1\n"
                                     "0.95,0,0,-1\n1.00,0,0,-1\n");
    ASSERT_EQ(recording.samples.size(), 4U);
    EXPECT_NEAR(recording.samples[3].seconds, 0.15, 1e-6);
}

TEST_F(ARecording, with_one_value_in_each_line_is_put_together) {
    expectTiltedScreenUp(read("timestamp (s),axis,value\n"
                              "0.5,x,-0.1\n0.5,y,0\n0.5,z,-1\n"
                              "0.7,z,-1\n0.7,x,-0.1\n0.7,y,0\n0.9,x,3\n"),
                         0.2);
    expectTiltedScreenUp(read("time;sensor;axis;value\n"
                              "0,5;gyroscope;x;7\n"
                              "0,5;linear_acceleration;x;7\n"
                              "0,5;accelerometer;x;0,980665\n"
                              "0,5;accelerometer;y;0\n"
                              "0,5;linear_acceleration;y;7\n"
                              "0,5;linear_acceleration;z;7\n"
                              "0,5;accelerometer;z;9,80665\n"
                              "0,7;accelerometer;x;0,980665\n"
                              "0,7;accelerometer;y;0\n"
                              "0,7;accelerometer;z;9,80665\n"),
                         0.2);
    EXPECT_EQ(complaints.str(), "");
    EXPECT_THAT(refusalOf("time,sensor,value\n0,light,1\n0,gyro x,2\n"),
                HasSubstr(":3: no lines above name x, y and z of an accelerometer"));
    EXPECT_THAT(refusalOf("time,name,value\n0,gravityX,1\n0,gravityY,2\n0,gravityZ,2\n"),
                HasSubstr("record the raw accelerometer"));
}

TEST_F(ARecording, with_lines_of_several_sensors_is_that_of_the_accelerometer) {
    const Recording recording = read("time,sensor,x,y,z\n"
                                     "0.0,Gyroscope,7,7,7\n"
                                     "0.5,Accelerometer,-0.1,0,-1\n"
                                     "0.5,Gravity,0,7,0\n"
                                     "0.6,Accelerometer Uncalibrated,7,7,7\n"
                                     "0.7,Accelerometer,-0.1,0,-1\n");
    expectTiltedScreenUp(recording, 0.2);
    EXPECT_THAT(recording.remarks,
                Contains("sensor: \"Accelerometer\", the lines of others are left out"));
}

TEST_F(ARecording, prefers_raw_columns_in_any_language) {
    expectTiltedScreenUp(
        read("Zeit (s);Lineare Beschleunigung x (m/s^2);Lineare Beschleunigung y (m/s^2);Lineare "
             "Beschleunigung z (m/s^2);Beschleunigung x (m/s^2);Beschleunigung y "
             "(m/s^2);Beschleunigung z (m/s^2)\n0;7;7;7;0.980665;0;9.80665\n"
             "1;7;7;7;0.980665;0;9.80665\n"),
        1);
    expectTiltedScreenUp(read("time,userAccelX,userAccelY,userAccelZ,gravityX,gravityY,gravityZ,"
                              "rawAccX,rawAccY,rawAccZ\n0,7,7,7,6,6,6,-0.1,0,-1\n"
                              "1,7,7,7,6,6,6,-0.1,0,-1\n"),
                         1);
    expectTiltedScreenUp(read("time,linear_acc_x,linear_acc_y,linear_acc_z,acc_x_g,acc_y_g,"
                              "acc_z_g\n0,7,7,7,-0.1,0,-1\n1,7,7,7,-0.1,0,-1\n"),
                         1);
}

TEST_F(ARecording, reads_iso_dates_across_offsets) {
    const Recording recording = read("date,x,y,z\n"
                                     "2014-03-30T01:59:59.500000000+01:00,0,0,-1\n"
                                     "2014-03-30T03:00:00.250000000+02:00,0,0,-1\n"
                                     "2014-03-30 01:00:01Z,0,0,-1\n");
    ASSERT_EQ(recording.samples.size(), 3U);
    EXPECT_NEAR(recording.samples[1].seconds, 0.75, 1e-6);
    EXPECT_NEAR(recording.samples[2].seconds, 1.5, 1e-6);
}

TEST_F(ARecording, keeps_several_readings_of_one_instant) {
    EXPECT_EQ(read("time,x,y,z\n0,0,0,1\n0,0,0,1\n0.1,0,0,1\n").samples.size(), 3U);
}

TEST_F(ARecording, without_times_needs_a_rate) {
    const std::string text = "x,y,z\n0,0,-1\n0,0,-1\n0,0,-1\n";
    EXPECT_EQ(refusalOf(text), ":1: there is no column of times; give the number of readings per "
                               "second with --rate HZ");
    const Recording recording = read(text, {.rate = 4.0});
    EXPECT_DOUBLE_EQ(recording.samples[2].seconds, 0.5);
    EXPECT_DOUBLE_EQ(recording.duration(), 0.75);
}

TEST_F(ARecording, refuses_a_rate_that_is_none) {
    for (const double rate : {0.0, -1.0, HUGE_VAL}) {
        std::ofstream(path) << "time,x,y,z\n0,0,0,1\n";
        EXPECT_THROW(readRecording(path, {.rate = rate}, complaints), BadInput);
    }
}

TEST_F(ARecording, refuses_a_rate_at_which_it_lasts_years) {
    for (const char* const readings : {"0,0,-1\n", "0,0,-1\n0,0,-1\n"})
        EXPECT_THAT(refusalOf(std::string("x,y,z\n") + readings, {.rate = 1e-9}),
                    HasSubstr("at 1e-09 readings a second it spans 1.16e+04 days; give a higher "
                              "rate with --rate HZ"));
}

TEST_F(ARecording, without_a_readable_time_needs_a_rate) {
    EXPECT_THAT(
        refusalOf("time,x,y,z\n13:45 o'clock,0,0,1\n"),
        HasSubstr(
            ":2: the time in \"time\" is neither a number nor an ISO date and time nor a time of "
            "day"));
    EXPECT_THAT(refusalOf("time,x,y,z\n5,0,0,1\n5,0,0,1\n"), HasSubstr("the same in all lines"));
    EXPECT_THAT(refusalOf("time (s),x,y,z\n0,0,0,1\n1e12,0,0,1\n"), HasSubstr("days"));
}

TEST_F(ARecording, reports_the_lines_that_hold_no_reading_and_goes_on) {
    const Recording recording = read("time,x,y,z\n"
                                     "0,0,0,1\n"
                                     "0.1,0,abc,1\n"
                                     "0.2,0,0\n"
                                     "soon,0,0,1\n"
                                     "0.3,nan,0,1\n"
                                     "0.3,0,inf,1\n"
                                     "0.3,0,0,\n"
                                     "0.4,0,0,1\n"
                                     "0.5,0,0,1\n"
                                     "0.1,0,0,1\n"
                                     "0.6,0,0,0x1\n");
    EXPECT_EQ(recording.samples.size(), 3U);
    EXPECT_EQ(complaintLines(), (std::vector<std::string>{
                                    ":3: y is not a number: \"abc\"; the line is skipped",
                                    ":4: 3 fields where at least 4 are needed; the line is skipped",
                                    ":5: the time is not a number: \"soon\"; the line is skipped",
                                    ":6: x is not a number: \"nan\"; the line is skipped",
                                    ":7: y is not a number: \"inf\"; the line is skipped",
                                    ":8: z is not a number: \"\"; the line is skipped",
                                    ":12: z is not a number: \"0x1\"; the line is skipped",
                                    ":11: the time is out of order; the line is skipped"}));
    EXPECT_THAT(recording.remarks, Contains("skipped: 8 lines without a reading"));
}

TEST_F(ARecording, skips_the_lines_whose_date_is_none) {
    const Recording recording = read("time,x,y,z\n"
                                     "2014-03-01T22:30:00+0100,0,0,1\n"
                                     "infinite-future,0,0,1\n"
                                     "2014-02-29T22:30:00+0100,0,0,1\n"
                                     "2014-03-01T22:30:00+25:00,0,0,1\n"
                                     "2014-03-01T22:30:01+0100,0,0,1\n");
    EXPECT_EQ(recording.samples.size(), 2U);
    EXPECT_EQ(
        complaintLines(),
        (std::vector<std::string>{
            ":3: the time is not a date: \"infinite-future\"; the line is skipped",
            ":4: the time is not a date: \"2014-02-29T22:30:00+0100\"; the line is skipped",
            ":5: the time is not a date: \"2014-03-01T22:30:00+25:00\"; the line is skipped"}));
}

TEST_F(ARecording, loses_one_line_to_a_time_that_goes_back) {
    const Recording recording = read("time,x,y,z\n0,0,0,1\n1,0,0,1\n-7,0,0,1\n2,0,0,1\n3,0,0,1\n");
    ASSERT_EQ(recording.samples.size(), 4U);
    EXPECT_EQ(recording.samples.back().seconds, 3);
    EXPECT_EQ(complaintLines(),
              std::vector<std::string>{":4: the time is out of order; the line is skipped"});
}

TEST_F(ARecording, only_counts_the_bad_lines_after_ten) {
    std::string text = "time,x,y,z\n0,0,0,1\n";
    for (int i = 0; i < 25; ++i)
        text += "bad\n";
    EXPECT_EQ(read(text).samples.size(), 1U);
    const auto lines = complaintLines();
    ASSERT_EQ(lines.size(), 11U);
    EXPECT_THAT(lines[9], StartsWith(":12: "));
    EXPECT_EQ(lines[10], ": 15 more lines are skipped");
}

TEST_F(ARecording, keeps_control_characters_and_long_fields_out_of_its_complaints) {
    read("time,x,y,z\n0,0,0,1\n1,0,0,\x1b[31m" + std::string(1000, 'a') + "\n");
    ASSERT_EQ(complaintLines().size(), 1U);
    EXPECT_THAT(complaintLines()[0], StartsWith(":3: z is not a number: \"?[31maaaa"));
    EXPECT_LT(complaintLines()[0].size(), 120U);
}

TEST_F(ARecording, saved_by_a_spreadsheet_is_read) {
    const Recording recording = read("\xef\xbb\xbf\"Time\" ; X;Y;Z;note;\r\n"
                                     "0;\"0\" ;0; 1,0 ;\"said \"\"x\"\"\";\r\n"
                                     "   \r\n"
                                     "1;0;0;1;;\r\n"
                                     "2;0;0;1;;");
    EXPECT_EQ(recording.samples.size(), 3U);
    EXPECT_EQ(complaints.str(), "");
    EXPECT_THAT(recording.remarks, Contains("x, y, z: \"X\", \"Y\", \"Z\""));
}

TEST_F(ARecording, loses_one_line_to_a_stray_quote) {
    EXPECT_EQ(read("time,x,y,z\n0,0,0,1\n1,\"0,0,1\n2,0,0,1\n").samples.size(), 2U);
    EXPECT_EQ(complaintLines().size(), 1U);
}

TEST_F(ARecording, may_have_text_before_its_headings) {
    EXPECT_EQ(
        read("Recorded by me; on 1, 2, 3 May\n\ntime,x,y,z\ns,g,g,g\n0,0,0,1\n").samples.size(),
        1U);
    EXPECT_EQ(complaintLines(),
              std::vector<std::string>{":4: x is not a number: \"g\"; the line is skipped"});
}

TEST_F(ARecording, without_headings_of_an_accelerometer_is_refused) {
    const std::string refusal = ":2: no headings above this line name x, y and z of an "
                                "accelerometer; name the columns time, x, y, z";
    EXPECT_EQ(refusalOf("time,lat,lon\n0,48.1,2.3\n"), refusal);
    EXPECT_EQ(refusalOf("time,gyroX,gyroY,gyroZ\n0,0,0,1\n"), refusal);
    EXPECT_EQ(refusalOf("time,v x (m/s),v y (m/s),v z (m/s)\n0,0,0,1\n"), refusal);
    EXPECT_THAT(refusalOf("0,0,0,1\n"), StartsWith(":1: no headings above this line"));
}

TEST_F(ARecording, without_gravity_is_refused) {
    EXPECT_THAT(refusalOf("\"Time (s)\",\"Linear Acceleration x (m/s^2)\",\"Linear Acceleration y "
                          "(m/s^2)\",\"Linear Acceleration z (m/s^2)\"\n0,0,0,0.1\n"),
                HasSubstr("record the raw accelerometer"));
    EXPECT_THAT(refusalOf("time,x,y,z\n0,0.01,0,0.02\n"), HasSubstr("removed gravity"));
}

TEST_F(ARecording, in_an_unknown_unit_is_refused_unless_the_user_says_it) {
    const std::string text = "time,x,y,z\n0,0,0,-64\n";
    EXPECT_EQ(refusalOf(text), ": the unit cannot be told: half of the readings are longer than "
                               "64, where a phone at rest reads 1 g, 9.8 m/s² or 1000 mg; give the "
                               "unit with --unit");
    expectReading(read(text, {.unit = AccelerationUnit::g}).samples[0].acceleration, 0, 0, -64);
}

TEST_F(ARecording, with_commas_for_all_purposes_is_refused) {
    EXPECT_THAT(refusalOf("time,x,y,z\n0,5,0,1,0,2,9,8\n"), HasSubstr("cannot be told apart"));
    EXPECT_EQ(read("time,x,y,z\n0,0,0,1\n1,0,0,1,2,0,0,1\n").samples.size(), 2U);
}

TEST_F(ARecording, whose_time_runs_backwards_is_refused) {
    EXPECT_THAT(refusalOf("time,x,y,z\n3,0,0,1\n2,0,0,1\n1,0,0,1\n"),
                HasSubstr(": the times are out of order"));
}

TEST_F(ARecording, that_is_none_is_refused_in_one_line) {
    EXPECT_EQ(refusalOf(""), ": the file is empty");
    EXPECT_THAT(refusalOf("\n\n"), HasSubstr("no line holds a reading"));
    EXPECT_THAT(refusalOf("time,x,y,z\n"), HasSubstr("no line holds a reading"));
    EXPECT_THAT(refusalOf("\xff\xfet\0i\0"), HasSubstr("UTF-16; save it as UTF-8"));
    EXPECT_THAT(refusalOf("PK\x03\x04 and so on"), HasSubstr("unpack it"));
    EXPECT_THAT(refusalOf(std::string("\x7f\x45LF\0\0", 6)), HasSubstr("this is not text"));
    EXPECT_THAT(refusalOf("time,x,y,z\n" + std::string(65'537, '0')),
                HasSubstr(":2: this line has more than 65536 bytes"));
    EXPECT_THAT(refusalOf("\x80\x91\xfe;\"\r;;;\n\"\"\",,\x1b"),
                HasSubstr("no line holds a reading"));
    EXPECT_THAT(refusalOf("time,x,y,z\n0,0,0,nan,5,5,5\n"), HasSubstr("no line holds a reading"));
}

TEST_F(ARecording, that_is_missing_or_a_directory_is_refused) {
    const auto refusal = [this] {
        try {
            readRecording(path, {}, complaints);
        } catch (const BadInput& error) {
            return withoutName(error.what());
        }
        return std::string("it was read");
    };
    EXPECT_EQ(refusal(),
              ": cannot be read: no such file; give the CSV file that the logger exports");
    std::filesystem::create_directory(path);
    EXPECT_EQ(refusal(),
              ": cannot be read: a folder, not a file; give the CSV file that the logger exports");
}

TEST(ARecordingInTime, gives_the_latest_sample) {
    const Recording recording{
        {{0, {1, 0, 0}}, {0.5, {2, 0, 0}}, {0.5, {3, 0, 0}}, {1.5, {4, 0, 0}}}, {}};
    EXPECT_EQ(recording.at(0).x, 1);
    EXPECT_EQ(recording.at(0.49).x, 1);
    EXPECT_EQ(recording.at(0.5).x, 3);
    EXPECT_EQ(recording.at(1.4).x, 3);
    EXPECT_EQ(recording.at(1.5).x, 4);
}

TEST(ARecordingInTime, repeats_after_its_last_sample_has_lasted_a_step) {
    const Recording recording{{{0, {1, 0, 0}}, {1, {2, 0, 0}}, {2, {3, 0, 0}}}, {}};
    EXPECT_DOUBLE_EQ(recording.duration(), 3.0);
    EXPECT_EQ(recording.at(2.9).x, 3);
    EXPECT_EQ(recording.at(3).x, 1);
    EXPECT_EQ(recording.at(3000001).x, 2);
}

TEST(ARecordingInTime, of_one_sample_never_changes) {
    const Recording recording{{{0, {1, 0, 0}}}, {}};
    EXPECT_DOUBLE_EQ(recording.duration(), 1.0);
    EXPECT_EQ(recording.at(12345.6).x, 1);
}

} // namespace
} // namespace noctara
