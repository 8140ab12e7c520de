/// Finds the columns by the headings of known loggers, otherwise by the units in the headings.
/// phyphox translates its headings, but not their units.
#include "recording/recording_columns.h"

#include "input/bad_input.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <string_view>

namespace noctara {

namespace {

/// * stands for x, y or z. In the order of preference.
constexpr std::array<std::string_view, 10> accelerometerNames{
    "accelerationincludinggravity*", // browsers
    "accelerometeracceleration*",    // SensorLog
    "accelerometer*",                // AndroSensor
    "gf*",                           // Physics Toolbox
    "acceleration*",                 // phyphox
    "accel*",
    "acc*",
    "a*",
    "*", // Sensor Logger, MATLAB Mobile
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
        if (unit == "m/s^2")
            unit = "m/s²";
    }
};

using Headings = std::vector<Heading>;

bool isRaw(std::string_view name) {
    return !name.starts_with("gravity") && name.find("linear") == name.npos &&
           name.find("user") == name.npos;
}

template <typename Units>
std::optional<typename Units::value_type> unitIn(const Heading& heading, const Units& units) {
    for (const auto& unit : units) {
        if (unit.symbol == heading.unit)
            return unit;
    }
    return std::nullopt;
}

std::optional<std::size_t> findName(const Headings& headings, std::string_view name) {
    for (std::size_t i = 0; i < headings.size(); ++i) {
        if (headings[i].name == name)
            return i;
    }
    return std::nullopt;
}

std::optional<std::array<std::size_t, 3>> findAxes(const Headings& headings, std::string name) {
    std::array<std::size_t, 3> axes{};
    const auto star = name.find('*');
    for (std::size_t axis = 0; axis < axes.size(); ++axis) {
        name[star] = "xyz"[axis];
        const auto index = findName(headings, name);
        if (!index)
            return std::nullopt;
        axes[axis] = *index;
    }
    return axes;
}

std::optional<std::size_t> findTime(const Headings& headings) {
    for (const std::string_view name : timeNames) {
        if (const auto index = findName(headings, name))
            return index;
    }
    const auto found = std::find_if(headings.begin(), headings.end(), [](const Heading& heading) {
        return heading.name.starts_with("time") || heading.name.starts_with("date") ||
               unitIn(heading, unitsOfTime);
    });
    if (found == headings.end())
        return std::nullopt;
    return static_cast<std::size_t>(found - headings.begin());
}

} // namespace

std::string RecordingColumns::nameOf(std::size_t column) const {
    return inQuotes(headings[column]);
}

std::optional<RecordingColumns> findColumns(const std::vector<std::string>& headingTexts) {
    const Headings headings(headingTexts.begin(), headingTexts.end());
    std::vector<std::string> names(accelerometerNames.begin(), accelerometerNames.end());
    for (const Heading& heading : headings) {
        if (heading.name.ends_with('x') && unitIn(heading, unitsOfAcceleration))
            names.push_back(heading.name.substr(0, heading.name.size() - 1) + '*');
    }
    for (const std::string& name : names) {
        if (const auto axes = findAxes(headings, name)) {
            RecordingColumns columns;
            columns.headings = headingTexts;
            columns.axes = *axes;
            columns.raw = isRaw(name);
            columns.unit = unitIn(headings[axes->front()], unitsOfAcceleration);
            columns.time = findTime(headings);
            if (columns.time)
                columns.timeUnit = unitIn(headings[*columns.time], unitsOfTime);
            return columns;
        }
    }
    return std::nullopt;
}

} // namespace noctara
