/// Reads headings as words: "accelerometerAccelerationX(G)" is accelerometer, acceleration, x, g.
#include "recording/recording_columns.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>
#include <utility>

namespace noctara {

namespace {

using Words = std::vector<std::string>;

/// From the least to the most welcome.
enum class Source {
    otherSensor,
    withoutGravity,
    gravityAlone,
    unnamed,
    accelerometer,
    explicitlyRaw
};

bool isLower(char c) {
    return c >= 'a' && c <= 'z';
}

bool isUpper(char c) {
    return c >= 'A' && c <= 'Z';
}

std::string lowered(std::string text) {
    for (char& c : text)
        c = isUpper(c) ? static_cast<char>(c - 'A' + 'a') : c;
    return text;
}

Words wordsOf(const std::string& heading) {
    Words words;
    char previous = ' ';
    for (const char c : heading) {
        const bool inWord = isLower(c) || isUpper(c) || (c >= '0' && c <= '9');
        const bool wasInWord =
            isLower(previous) || isUpper(previous) || (previous >= '0' && previous <= '9');
        if (inWord) {
            if (!wasInWord || (isLower(previous) && isUpper(c)))
                words.emplace_back();
            words.back() += c;
        }
        previous = c;
    }
    for (std::string& word : words)
        word = lowered(word);
    return words;
}

bool isOneOf(std::string_view word, std::initializer_list<std::string_view> choices) {
    return std::find(choices.begin(), choices.end(), word) != choices.end();
}

bool hasOneOf(const Words& words, std::initializer_list<std::string_view> choices) {
    return std::any_of(words.begin(), words.end(),
                       [&](const std::string& word) { return isOneOf(word, choices); });
}

bool hasPrefix(const Words& words, std::initializer_list<std::string_view> prefixes) {
    return std::any_of(words.begin(), words.end(), [&](const std::string& word) {
        return std::any_of(prefixes.begin(), prefixes.end(),
                           [&](std::string_view prefix) { return word.starts_with(prefix); });
    });
}

/// The position of the axis letter in words like x, ax, accelx, xaxis.
std::optional<std::size_t> axisLetterIn(std::string_view word) {
    constexpr std::string_view letters = "xyz";
    if (word.size() == 1 && letters.find(word[0]) != letters.npos)
        return 0;
    if (letters.find(word.back()) != letters.npos &&
        isOneOf(word.substr(0, word.size() - 1),
                {"a", "f", "gf", "acc", "accel", "acceleration", "accelerometer"}))
        return word.size() - 1;
    if (letters.find(word.front()) != letters.npos &&
        isOneOf(word.substr(1), {"axis", "acc", "accel", "acceleration", "val", "value"}))
        return 0;
    return std::nullopt;
}

/// 0 to 2 for x to z. Makes that letter a star, so that the three headings of a sensor become one.
std::optional<std::size_t> takeAxis(Words& words) {
    for (std::string& word : words) {
        if (const auto letter = axisLetterIn(word)) {
            const auto axis = static_cast<std::size_t>(word[*letter] - 'x');
            word[*letter] = '*';
            return axis;
        }
    }
    return std::nullopt;
}

Source sourceOf(const Words& words) {
    if (hasPrefix(words, {"gyro", "rot", "mag", "orient", "attitude", "quat", "pitch", "roll",
                          "yaw", "rad", "deg", "dps", "compass", "omega"}))
        return Source::otherSensor;
    if (hasPrefix(words, {"linear"}) || hasOneOf(words, {"user", "without"}))
        return Source::withoutGravity;
    if (hasOneOf(words, {"including", "with", "raw"}))
        return Source::explicitlyRaw;
    if (hasPrefix(words, {"grav"}))
        return Source::gravityAlone;
    return hasPrefix(words, {"acc", "f*", "gf*"}) ? Source::accelerometer : Source::unnamed;
}

std::optional<AccelerationUnit> unitOf(const std::string& heading) {
    const std::string text = lowered(heading);
    for (const char* metric : {"m/s", "ms-2", "ms^-2"}) {
        if (text.find(metric) != text.npos)
            return AccelerationUnit::metresPerSecondSquared;
    }
    const Words words = wordsOf(heading);
    if (hasOneOf(words, {"mg"}))
        return AccelerationUnit::milliG;
    if (hasOneOf(words, {"g"}))
        return AccelerationUnit::g;
    return std::nullopt;
}

/// How likely a heading is to be that of the time; 0 when it is not.
int likelihoodOfTime(const std::string& heading) {
    const Words words = wordsOf(heading);
    if (words.empty())
        return 0;
    const bool named = words.front() == "t" ||
                       hasOneOf(words, {"time", "timestamp", "timestamps", "datetime", "date",
                                        "elapsed", "epoch", "uptime", "seconds", "milliseconds",
                                        "microseconds", "nanoseconds", "millis", "sec", "secs"});
    // Whatever its language, a heading in seconds is that of the time; one per second is not.
    const bool measured =
        hasOneOf(words, {"s", "ms", "us", "ns"}) && heading.find('/') == heading.npos;
    if (!named && !measured)
        return 0;
    int likelihood = 3;
    if (hasOneOf(words, {"elapsed", "start", "reboot", "relative"}))
        likelihood += 2;
    if (hasPrefix(words, {"acc"}))
        likelihood += 1;
    if (hasPrefix(words, {"gyro", "mag", "motion", "location", "altimeter", "pedometer"}))
        likelihood -= 2;
    return likelihood;
}

std::vector<std::size_t> findTimes(const std::vector<std::string>& headings) {
    std::vector<std::pair<int, std::size_t>> ranked;
    for (std::size_t i = 0; i < headings.size(); ++i) {
        if (const int likelihood = likelihoodOfTime(headings[i]))
            ranked.emplace_back(-likelihood, i);
    }
    std::sort(ranked.begin(), ranked.end());
    std::vector<std::size_t> times;
    for (const auto& [rank, index] : ranked)
        times.push_back(index);
    return times;
}

std::optional<AxisConvention> findConvention(const std::vector<std::string>& headings) {
    for (const std::string& heading : headings) {
        const std::string text = lowered(heading);
        if (text.find("android") != text.npos)
            return AxisConvention::android;
        if (text.find("accelerometeracceleration") != text.npos ||
            text.find("iphone") != text.npos || hasOneOf(wordsOf(heading), {"ios"}))
            return AxisConvention::ios;
    }
    return std::nullopt;
}

struct Sensor {
    Words words;
    std::array<std::optional<std::size_t>, 3> axes;
    Source source;

    bool isWhole() const { return axes[0] && axes[1] && axes[2]; }
};

std::vector<Sensor> findSensors(const std::vector<std::string>& headings) {
    std::vector<Sensor> sensors;
    for (std::size_t i = 0; i < headings.size(); ++i) {
        Words words = wordsOf(headings[i]);
        const auto axis = takeAxis(words);
        if (!axis)
            continue;
        auto sensor = std::find_if(sensors.begin(), sensors.end(),
                                   [&](const Sensor& known) { return known.words == words; });
        if (sensor == sensors.end())
            sensor = sensors.insert(sensor, Sensor{words, {}, sourceOf(words)});
        if (!sensor->axes[*axis])
            sensor->axes[*axis] = i;
    }
    return sensors;
}

} // namespace

std::optional<RecordingColumns> findColumns(const std::vector<std::string>& headings) {
    const std::vector<Sensor> sensors = findSensors(headings);
    const Sensor* best = nullptr;
    for (const Sensor& sensor : sensors) {
        if (sensor.isWhole() && sensor.source != Source::otherSensor &&
            (!best || sensor.source > best->source))
            best = &sensor;
    }
    if (!best)
        return std::nullopt;
    RecordingColumns columns;
    columns.axes = {*best->axes[0], *best->axes[1], *best->axes[2]};
    columns.times = findTimes(headings);
    columns.raw = best->source >= Source::unnamed;
    columns.unit = unitOf(headings[columns.axes[0]]);
    columns.convention = findConvention(headings);
    return columns;
}

std::optional<double> timeUnitOf(const std::string& heading) {
    for (const char* microseconds : {"\u00b5s", "\u03bcs"}) {
        if (heading.find(microseconds) != heading.npos)
            return 1e-6;
    }
    const Words words = wordsOf(heading);
    if (hasOneOf(words, {"ns", "nanos", "nanoseconds"}))
        return 1e-9;
    if (hasOneOf(words, {"us", "micros", "microseconds"}))
        return 1e-6;
    if (hasOneOf(words, {"ms", "millis", "milliseconds"}))
        return 1e-3;
    if (hasOneOf(words, {"s", "sec", "secs", "seconds"}))
        return 1.0;
    return std::nullopt;
}

} // namespace noctara
