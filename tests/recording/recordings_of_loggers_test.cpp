/// The file formats of well-known loggers.
#include "recording/recording_file.h"

#include "tests/recording/a_recording.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace noctara {
namespace {

struct Logger {
    const char* name;
    const char* headings;
    /// Two lines of a phone lying screen up that reads -0.1, 0, -1 g in the monitor's axes.
    const char* rows;
    double secondsBetween;
};

void PrintTo(const Logger& logger, std::ostream* out) {
    *out << logger.name;
}

class ALogger : public ARecording, public testing::WithParamInterface<Logger> {};

TEST_P(ALogger, is_understood_by_its_headings) {
    expectTiltedScreenUp(read(std::string(GetParam().headings) + GetParam().rows),
                         GetParam().secondsBetween);
    EXPECT_EQ(complaints.str(), "");
}

INSTANTIATE_TEST_SUITE_P(
    OfAPhone, ALogger,
    testing::Values(
        Logger{"Phyphox",
               "\"Time (s)\",\"Acceleration x (m/s^2)\",\"Acceleration y (m/s^2)\",\"Acceleration "
               "z (m/s^2)\",\"Absolute acceleration (m/s^2)\"\n",
               "1.0E0,9.80665E-1,0.0E0,9.80665E0,9.86E0\n1.01E0,9.80665E-1,0.0E0,9.80665E0,9.8E0\n",
               0.01},
        Logger{"PhyphoxGerman",
               "\"Zeit (s)\";\"Beschleunigung x (m/s^2)\";\"Beschleunigung y (m/s^2)\";"
               "\"Beschleunigung z (m/s^2)\"\n",
               "\"1,00\";\"0,980665\";\"0\";\"9,80665\"\n\"1,01\";\"0,980665\";\"0\";\"9,80665\"\n",
               0.01},
        Logger{"PhysicsToolboxForces", "time,gFx,gFy,gFz,TgF\n",
               "0.004,-0.1,0,-1,1.0\n0.008,-0.1,0,-1,1.0\n", 0.004},
        Logger{"PhysicsToolboxAll", "time;ax;ay;az;aT;gFx;gFy;gFz;wx;wy;wz;Bx;By;Bz\n",
               "0;5;5;5;8;-0.1;0;-1;1;2;3;4;5;6\n0.5;5;5;5;8;-0.1;0;-1;1;2;3;4;5;6\n", 0.5},
        Logger{"SensorLogger", "time,seconds_elapsed,z,y,x\n",
               "1669000000000000000,0.25,9.80665,0,0.980665\n"
               "1669000000010000000,0.26,9.80665,0,0.980665\n",
               0.01},
        Logger{"AndroSensor",
               "LINEAR ACCELERATION X (m/s²);LINEAR ACCELERATION Y (m/s²);LINEAR ACCELERATION Z "
               "(m/s²);GRAVITY X (m/s²);GRAVITY Y (m/s²);GRAVITY Z (m/s²);ACCELEROMETER X (m/s²);"
               "ACCELEROMETER Y (m/s²);ACCELEROMETER Z (m/s²);GYROSCOPE X (rad/s);GYROSCOPE Y "
               "(rad/s);GYROSCOPE Z (rad/s);ORIENTATION X (pitch °);Time since start in ms ;"
               "YYYY-MO-DD HH-MI-SS_SSS\n",
               "1;1;1;2;2;2;0.980665;0;9.80665;3;3;3;4;20;2014-03-01 22-30-00_000\n"
               "1;1;1;2;2;2;0.980665;0;9.80665;3;3;3;4;520;2014-03-01 22-30-00_500\n",
               0.5},
        Logger{"SensorLogForIos",
               "loggingTime(txt),locationTimestamp_since1970(s),"
               "accelerometerTimestamp_sinceReboot(s),accelerometerAccelerationX(G),"
               "accelerometerAccelerationY(G),accelerometerAccelerationZ(G),"
               "motionUserAccelerationX(G),motionUserAccelerationY(G),motionUserAccelerationZ(G)\n",
               "2014-03-01T22:30:00.000+01:00,1393709400,5000.1,-0.1,0,-1,7,7,7\n"
               "2014-03-01T22:30:00.033+01:00,1393709400,5000.2,-0.1,0,-1,7,7,7\n",
               0.1},
        Logger{"MatlabMobile", "\"X\",\"Y\",\"Z\",\"Timestamp\"\n",
               "0.980665,0,9.80665,01-Mar-2014 22:30:00.100\n"
               "0.980665,0,9.80665,01-Mar-2014 22:30:00.350\n",
               0.25},
        Logger{"WebPage",
               "timestamp,accelerationX,accelerationY,accelerationZ,accelerationIncludingGravityX,"
               "accelerationIncludingGravityY,accelerationIncludingGravityZ\n",
               "16,7,7,7,0.980665,0,9.80665\n32,7,7,7,0.980665,0,9.80665\n", 0.016},
        Logger{"Plain", "t\tx\ty\tz\n", "0\t-0.1\t0\t-1\n0.1\t-0.1\t0\t-1\n", 0.1}),
    [](const auto& logger) { return std::string(logger.param.name); });

} // namespace
} // namespace noctara
