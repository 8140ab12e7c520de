#include "night/reading_words.h"

#include "monitor/posture.h"

#include <fmt/format.h>

#include <cmath>

namespace noctara {

std::string readingInWords(const Reading& reading) {
    const char* posture = reading.screenDown ? "screen down" : "screen up";
    const double tilt =
        (reading.screenDown ? reading.angle : std::abs(pi - reading.angle)) * degreesPerRadian;
    if (reading.lies)
        return fmt::format("lying {}, {:.1f}° off", posture, tilt);
    switch (reading.source) {
    case Reading::Source::deviceMotion:
        return "device motion is delivered, which never counts as lying";
    case Reading::Source::nothing:
        return "the accelerometer delivered nothing";
    default:
        return fmt::format("not lying {} ({:.1f}° off, {:.2f} g)", posture, tilt, reading.length);
    }
}

} // namespace noctara
