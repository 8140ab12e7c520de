/// Every verdict here is that of the monitor's own check; this only counts and words them.
#include "command/detect_command.h"

#include "monitor/posture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <iterator>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace noctara {

namespace {

constexpr std::int32_t highestSensitivity = 9;
constexpr double nearlyAll = 0.99;
/// In seconds. The monitor goes on with an old reading, but a table of them says nothing.
constexpr double longestGap = 10.0;

[[gnu::format(printf, 2, 3)]] void print(std::ostream& out, const char* format, ...) {
    std::array<char, 256> text{};
    va_list values;
    va_start(values, format);
    std::vsnprintf(text.data(), text.size(), format, values);
    va_end(values);
    out << text.data();
}

struct Reading {
    double length = 0;
    double angle = 0;

    explicit Reading(const Acceleration& a) { angle = computeTiltAngle(&length, a.x, a.y, a.z); }

    bool lies(std::int32_t sensitivity, bool screenDown) const {
        return liesInPosture(angle, length, postureTolerance(sensitivity), screenDown);
    }

    bool nearerToScreenDown() const { return angle < pi / 2; }

    double degreesOffVertical() const {
        return (nearerToScreenDown() ? angle : pi - angle) * degreesPerRadian;
    }

    /// A sensitivity of -1 allows any tilt, so that only the length decides.
    bool hasLengthAtRest() const { return lies(-1, nearerToScreenDown()); }
};

std::vector<Reading> readingsOf(const Recording& recording) {
    std::vector<Reading> readings;
    readings.reserve(recording.samples.size());
    for (const auto& sample : recording.samples)
        readings.emplace_back(sample.acceleration);
    return readings;
}

double shareOf(const std::vector<Reading>& readings, std::int32_t sensitivity, bool screenDown) {
    const auto lying = std::count_if(readings.begin(), readings.end(), [&](const Reading& reading) {
        return reading.lies(sensitivity, screenDown);
    });
    return static_cast<double>(lying) / static_cast<double>(readings.size());
}

/// In percent; neither all nor none unless it is so.
double shownPercent(double share) {
    if (share <= 0 || share >= 1)
        return share * 100;
    return std::clamp(share * 100, 0.01, 99.99);
}

double medianOf(const std::vector<Recording::Sample>& samples, double Acceleration::*axis) {
    std::vector<double> values;
    values.reserve(samples.size());
    for (const auto& sample : samples)
        values.push_back(sample.acceleration.*axis);
    return median(std::move(values));
}

/// The reading that a phone keeps to; absent when it is moved about. It need not lie flat, nor the
/// length be right.
std::optional<Reading> steadyReading(const Recording& recording) {
    constexpr double mostOfThem = 0.9;
    constexpr double spread = 0.05;
    const auto& samples = recording.samples;
    const Acceleration middle{medianOf(samples, &Acceleration::x),
                              medianOf(samples, &Acceleration::y),
                              medianOf(samples, &Acceleration::z)};
    const Reading steady(middle);
    const auto near = std::count_if(samples.begin(), samples.end(), [&](const auto& sample) {
        const Acceleration& a = sample.acceleration;
        const Reading off({a.x - middle.x, a.y - middle.y, a.z - middle.z});
        return off.length <= spread * steady.length;
    });
    if (static_cast<double>(near) < mostOfThem * static_cast<double>(samples.size()))
        return std::nullopt;
    return steady;
}

const char* verdictOn(const Reading& reading, std::int32_t sensitivity, bool stillOffLength) {
    const bool screenDown = reading.nearerToScreenDown();
    if (reading.lies(sensitivity, screenDown))
        return screenDown ? "screen down" : "screen up";
    if (reading.hasLengthAtRest())
        return "tilted";
    return stillOffLength ? "still, but not 1 g long" : "moving";
}

std::string describeTolerance(std::int32_t sensitivity) {
    const double degrees = postureTolerance(sensitivity) * degreesPerRadian;
    if (std::isinf(degrees))
        return "any tilt passes";
    if (degrees < 0)
        return "no tilt passes";
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "less than %.2f° off passes", degrees);
    return text.data();
}

void writeSeconds(const Recording& recording, std::int32_t sensitivity, bool stillOffLength,
                  std::ostream& out) {
    print(out, "\n second  off vertical   length  at Sensitivity %d: %s\n", sensitivity,
          describeTolerance(sensitivity).c_str());
    const auto& samples = recording.samples;
    std::size_t latest = 0;
    for (double second = 0; second <= samples.back().seconds;) {
        while (latest + 1 < samples.size() && samples[latest + 1].seconds <= second)
            ++latest;
        const Reading reading(samples[latest].acceleration);
        print(out, "%7.0f  %11.2f°  %5.3f g  %s\n", second, reading.degreesOffVertical(),
              reading.length, verdictOn(reading, sensitivity, stillOffLength));
        if (latest + 1 == samples.size())
            break;
        const double next = samples[latest + 1].seconds;
        if (next - second > longestGap) {
            second = std::ceil(next);
            print(out, "      -  no reading until %.2f s\n", next);
        } else {
            ++second;
        }
    }
}

void writeShares(const std::vector<Reading>& readings, std::ostream& out) {
    out << "\nReadings that pass\n Sensitivity  tolerance   screen up  screen down\n";
    for (std::int32_t sensitivity = 0; sensitivity <= highestSensitivity; ++sensitivity)
        print(out, "%12d  %8.2f°  %8.2f %%  %9.2f %%\n", sensitivity,
              postureTolerance(sensitivity) * degreesPerRadian,
              shownPercent(shareOf(readings, sensitivity, false)),
              shownPercent(shareOf(readings, sensitivity, true)));
}

/// The highest sensitivity at which that share of the readings, all of which pass at 0, still does.
std::int32_t highestPassing(const std::vector<Reading>& readings, bool screenDown, double share) {
    std::int32_t sensitivity = highestSensitivity;
    while (sensitivity > 0 && shareOf(readings, sensitivity, screenDown) < share)
        --sensitivity;
    return sensitivity;
}

void writeLying(const std::vector<Reading>& readings, bool axesAreAssumed, bool screenDown,
                std::ostream& out) {
    const char* posture = screenDown ? "down" : "up";
    const double share = shareOf(readings, 0, screenDown);
    const double otherShare = shareOf(readings, 0, !screenDown);
    if (share >= 1)
        print(out, "\nThe phone lies still with the screen %s all the time.\n", posture);
    else
        print(out, "\nThe phone lies still with the screen %s in %s%.2f %% of the readings.\n",
              posture, share < 0.5 ? "only " : "", shownPercent(share));
    if (otherShare > 0)
        print(out, "With the screen %s it does so in %.2f %%.\n", screenDown ? "up" : "down",
              shownPercent(otherShare));

    if (axesAreAssumed)
        print(out, "That it is %s, and not %s, rests on the axes that were assumed above.\n",
              posture, screenDown ? "up" : "down");

    std::vector<Reading> lying;
    std::copy_if(readings.begin(), readings.end(), std::back_inserter(lying),
                 [&](const Reading& reading) { return reading.lies(0, screenDown); });
    std::vector<double> tilts;
    for (const Reading& reading : lying)
        tilts.push_back(reading.degreesOffVertical());
    const double worst = *std::max_element(tilts.begin(), tilts.end());
    print(out, "Lying so, it reads %.1f° off the vertical (median), %.1f° at worst.\n",
          median(std::move(tilts)), worst);

    const std::int32_t all = highestPassing(lying, screenDown, 1.0);
    const std::int32_t most = highestPassing(lying, screenDown, nearlyAll);
    const char* such = share >= 1 ? "" : " such";
    if (all == highestSensitivity) {
        print(out, "Any Sensitivity from 0 to 9 detects it at every%s reading.\n", such);
        return;
    }
    print(out, "Sensitivity %s%d detects it at every%s reading", all > 0 ? "up to " : "", all,
          such);
    if (most > all)
        print(out, ", up to %d at nearly every one (%.2f %%)", most,
              shownPercent(shareOf(lying, most, screenDown)));
    out << ".\n";
    if (most < highestSensitivity)
        print(out, "Sensitivity %d detects it at %.2f %% of them.\n", most + 1,
              shownPercent(shareOf(lying, most + 1, screenDown)));
}

void writeNotLying(const Recording& recording, const std::optional<Reading>& steady,
                   std::ostream& out) {
    if (!steady) {
        print(out,
              "\nIn none of these %.0f seconds does the phone lie still: no reading passes at any "
              "Sensitivity.\n",
              std::max(1.0, std::round(recording.duration())));
    } else if (!steady->hasLengthAtRest()) {
        print(out,
              "\nThe phone keeps still, but reads %.3g g where 1 g is due; 0.9 to 1.1 g pass.\n"
              "The sensor is badly calibrated, or the unit is another (--unit).\n",
              steady->length);
    } else {
        print(out,
              "\nThe phone keeps still, but %.1f° off the vertical; Sensitivity 0, the widest, "
              "allows %.1f°.\n",
              steady->degreesOffVertical(), postureTolerance(0) * degreesPerRadian);
    }
}

} // namespace

double shareLying(const Recording& recording, std::int32_t sensitivity, bool screenDown) {
    return shareOf(readingsOf(recording), sensitivity, screenDown);
}

void detect(const Recording& recording, const DetectOptions& options, std::ostream& out) {
    const std::vector<Reading> readings = readingsOf(recording);
    const double count = static_cast<double>(readings.size());
    print(out, "%.0f %s in %.1f s, %.3g a second\n", count,
          readings.size() == 1 ? "reading" : "readings", recording.duration(),
          count / recording.duration());
    for (const std::string& remark : recording.remarks)
        out << "  " << remark << '\n';

    const auto steady = steadyReading(recording);
    writeSeconds(recording, options.sensitivity, steady && !steady->hasLengthAtRest(), out);
    writeShares(readings, out);
    const double up = shareOf(readings, 0, false);
    const double down = shareOf(readings, 0, true);
    if (up > 0 || down > 0)
        writeLying(readings, recording.axesAreAssumed, down > up, out);
    else
        writeNotLying(recording, steady, out);
}

} // namespace noctara
