/// Finds the columns by the headings of known loggers, otherwise by the units in the headings.
/// phyphox translates its headings, but not their units.
#include "recording/recording_columns.h"

#include "input/bad_input.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <utility>

namespace noctara {

namespace {

/// * stands for x, y or z. In the order of preference.
constexpr std::array<std::string_view, 11> accelerometerNames{
    "accelerationincludinggravity*", // browsers
    "accelerometeracceleration*",    // SensorLog
    "accelerometer*",                // AndroSensor
    "gf*",                           // Physics Toolbox
    "acceleration*",                 // phyphox
    "accel*",
    "acc*",
    "a*",
    "*", // Sensor Logger, MATLAB Mobile
    "*axis",
    "*value",
};

/// In the order of preference.
constexpr std::array<std::string_view, 7> timeNames{
    "secondselapsed",                    // Sensor Logger
    "accelerometertimestampsincereboot", // SensorLog
    "loggingtime",                       // SensorLog
    "timesincestartinms",                // AndroSensor
    "time",
    "timestamp", // MATLAB Mobile
    "t",
};

/// In names of gravity alone, or of acceleration without it, in several languages.
constexpr std::array<std::string_view, 9> otherThanRaw{
    "gravit", "linear", "linair", "lineal", "user", "schwer", "withoutg", "nog", "free",
};

constexpr std::array<std::string_view, 4> valueNames{"value", "reading", "data", "measurement"};

constexpr std::array<std::string_view, 3> axisNames{"axis", "channel", "component"};

/// A sensor, with or without the axis.
constexpr std::array<std::string_view, 9> sensorNames{
    "sensor", "sensorname", "sensortype", "name", "type", "signal", "variable", "quantity", "label",
};

/// Endings of headings without a unit in brackets: "Time since start in ms", "timestamp_ns".
constexpr std::array<std::pair<std::string_view, std::string_view>, 13> timeEndings{{
    {"milliseconds", "ms"},
    {"microseconds", "us"},
    {"nanoseconds", "ns"},
    {"seconds", "s"},
    {"secondselapsed", "s"},
    {"millis", "ms"},
    {"micros", "us"},
    {"nanos", "ns"},
    {"msec", "ms"},
    {"ms", "ms"},
    {"us", "us"},
    {"ns", "ns"},
    {"times", "s"}, // time_s
}};

/// In lower case and without punctuation: "Acceleration x (m/s^2)" is accelerationx in m/s^2.
struct Heading {
    std::string name;
    std::string unit;

    explicit Heading(std::string text) {
        for (char& c : text)
            c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        const auto bracket = std::min(text.find_first_of("(["), text.size());
        std::copy_if(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(bracket),
                     std::back_inserter(name),
                     [](unsigned char c) { return std::isalnum(c) != 0; });
        if (bracket < text.size())
            unit = text.substr(bracket + 1, text.find_first_of(")]", bracket) - bracket - 1);
    }
};

using Headings = std::vector<Heading>;

bool isRaw(std::string_view name) {
    const auto contains = [name](std::string_view part) { return name.find(part) != name.npos; };
    return contains("includinggravity") || contains("withgravity") ||
           std::none_of(otherThanRaw.begin(), otherThanRaw.end(), contains);
}

template <typename Names>
std::optional<std::size_t> findAnyName(const Headings& headings, const Names& names) {
    for (const auto& name : names) {
        for (std::size_t i = 0; i < headings.size(); ++i) {
            if (headings[i].name == name)
                return i;
        }
    }
    return std::nullopt;
}

std::optional<std::array<std::size_t, 3>> findAxes(const Headings& headings, std::string name) {
    std::array<std::size_t, 3> axes{};
    const auto star = name.find('*');
    for (std::size_t axis = 0; axis < axes.size(); ++axis) {
        name[star] = "xyz"[axis];
        const auto index = findAnyName(headings, std::array{std::string_view(name)});
        if (!index)
            return std::nullopt;
        axes[axis] = *index;
    }
    return axes;
}

std::optional<std::size_t> findTime(const Headings& headings) {
    if (const auto index = findAnyName(headings, timeNames))
        return index;
    const auto found = std::find_if(headings.begin(), headings.end(), [](const Heading& heading) {
        return heading.name.starts_with("time") || heading.name.starts_with("date") ||
               heading.name.starts_with("elapsed") || findUnitOfTime(heading.unit);
    });
    if (found == headings.end())
        return std::nullopt;
    return static_cast<std::size_t>(found - headings.begin());
}

std::optional<UnitOfTime> unitOfTimeIn(const Heading& heading) {
    if (const auto unit = findUnitOfTime(heading.unit))
        return unit;
    for (const auto& [ending, symbol] : timeEndings) {
        if (heading.name.ends_with(ending))
            return findUnitOfTime(symbol);
    }
    return std::nullopt;
}

/// The names of known loggers, and patterns from the headings that look like an accelerometer's.
/// Those of gravity and of acceleration without it come last.
std::vector<std::string> possibleNames(const Headings& headings) {
    std::vector<std::string> names(accelerometerNames.begin(), accelerometerNames.end());
    for (const Heading& heading : headings) {
        const std::string& name = heading.name;
        const bool isKnown = name.find("acc") != name.npos || name.find("gravit") != name.npos;
        const bool hasUnit = findUnitOfAcceleration(heading.unit).has_value();
        for (auto x = name.rfind('x'); x != name.npos; x = x > 0 ? name.rfind('x', x - 1) : x - 1) {
            if (isKnown || (hasUnit && x + 1 == name.size()))
                names.push_back(name.substr(0, x) + '*' + name.substr(x + 1));
        }
    }
    std::stable_partition(names.begin(), names.end(), isRaw);
    return names;
}

template <typename Names>
bool isAmong(std::string_view name, const Names& names) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

} // namespace

std::string RecordingColumns::nameOf(std::size_t column) const {
    return inQuotes(headings[column]);
}

std::optional<RecordingColumns> findColumns(const std::vector<std::string>& headingTexts) {
    const Headings headings(headingTexts.begin(), headingTexts.end());
    for (const std::string& name : possibleNames(headings)) {
        if (const auto axes = findAxes(headings, name)) {
            RecordingColumns columns;
            columns.headings = headingTexts;
            columns.axes = *axes;
            columns.raw = isRaw(name);
            columns.unit = findUnitOfAcceleration(headings[axes->front()].unit);
            columns.time = findTime(headings);
            if (columns.time) {
                columns.timeName = headingTexts[*columns.time];
                columns.timeUnit = unitOfTimeIn(headings[*columns.time]);
            }
            return columns;
        }
    }
    return std::nullopt;
}

std::optional<LabelColumns> findLabelColumns(const std::vector<std::string>& headingTexts) {
    const Headings headings(headingTexts.begin(), headingTexts.end());
    const auto value = findAnyName(headings, valueNames);
    LabelColumns columns;
    for (std::size_t i = 0; i < headings.size(); ++i) {
        if (isAmong(headings[i].name, axisNames) || isAmong(headings[i].name, sensorNames))
            columns.labels.push_back(i);
    }
    if (!value || columns.labels.empty())
        return std::nullopt;
    columns.value = *value;
    columns.time = findTime(headings);
    if (columns.time) {
        columns.timeName = headingTexts[*columns.time];
        columns.timeUnit = unitOfTimeIn(headings[*columns.time]);
    }
    return columns;
}

std::optional<std::size_t> findSensorColumn(const std::vector<std::string>& headings) {
    return findAnyName(Headings(headings.begin(), headings.end()), sensorNames);
}

bool namesRawAccelerometer(std::string_view sensor) {
    const Heading heading{std::string(sensor)};
    return heading.name.find("acc") != heading.name.npos && isRaw(heading.name);
}

} // namespace noctara
