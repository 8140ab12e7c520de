#include "night/trace.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>

namespace noctara {

namespace {

/// A whole number of seconds is written without a fraction.
Json number(double value) {
    constexpr double exactIntegers = 9007199254740992.0;
    if (std::floor(value) == value && std::abs(value) < exactIntegers)
        return static_cast<std::int64_t>(value);
    return value;
}

std::string base64(const Data& data) {
    constexpr std::string_view digits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t i = 0; i < data.size(); i += 3) {
        const auto byte = [&](std::size_t k) { return i + k < data.size() ? data[i + k] : 0U; };
        const unsigned group = (byte(0) << 16) | (byte(1) << 8) | byte(2);
        for (unsigned k = 0; k < 4; ++k)
            text += i + k <= data.size() ? digits[(group >> (18 - 6 * k)) & 63] : '=';
    }
    return text;
}

/// A whole number is written without a fraction if it is the same number as an integer.
Json real(double value) {
    if (!std::isfinite(value))
        return Json{{"real", std::isnan(value) ? "nan" : value > 0 ? "inf" : "-inf"}};
    const bool isOutside = std::abs(value) > std::numeric_limits<std::int32_t>::max();
    return isOutside ? Json(value) : number(value);
}

Json json(const PropertyList& value);

Json json(const Dictionary& dictionary) {
    Json object = Json::object();
    for (const auto& [key, value] : dictionary)
        object[key] = json(value);
    return object;
}

/// Tells a dictionary with one of these keys alone from a value that is written as an object.
Json jsonOfValue(const Dictionary& dictionary) {
    constexpr std::array<std::string_view, 4> names{"date", "data", "real", "dictionary"};
    if (dictionary.size() == 1 &&
        std::count(names.begin(), names.end(), dictionary.begin()->key) != 0)
        return Json{{"dictionary", json(dictionary)}};
    return json(dictionary);
}

struct ToJson {
    Json operator()(std::monostate) const { return nullptr; }
    Json operator()(bool value) const { return value; }
    Json operator()(std::int64_t value) const { return value; }
    Json operator()(double value) const { return number(value); }
    Json operator()(std::string_view value) const { return value; }
    Json operator()(const std::string& value) const { return value; }
    Json operator()(Date value) const { return Json{{"date", number(value.secondsSince1970)}}; }
    Json operator()(const Acceleration& value) const {
        return Json::array({value.x, value.y, value.z});
    }
    Json operator()(const PropertyList* value) const { return json(*value); }
    Json operator()(const Dictionary* value) const { return json(*value); }
    Json operator()(const Dictionary& value) const { return jsonOfValue(value); }
    Json operator()(const Data& value) const { return Json{{"data", base64(value)}}; }
    Json operator()(const Array& value) const {
        Json array = Json::array();
        for (const auto& item : value)
            array.push_back(json(item));
        return array;
    }
    Json operator()(std::span<const std::string> value) const {
        return Json(std::vector<std::string>(value.begin(), value.end()));
    }
};

Json json(const PropertyList& value) {
    if (const auto* number = value.as<double>())
        return real(*number);
    return std::visit(ToJson(), value.variant());
}

/// The value of an event. One overload for each kind of event. A missing overload is a compile
/// error.
struct EventValue {
    Json operator()(const PostureChange& change) const {
        if (const auto* read = std::get_if<Acceleration>(&change.posture))
            return Json::array({number(read->x), number(read->y), number(read->z)});
        return wordOf(postureWords, std::get<NamedPosture>(change.posture));
    }
    Json operator()(const ChargerChange& change) const { return change.plugged; }
    Json operator()(const SettingsChange& change) const { return json(change.changed); }
    Json operator()(const SettingsRemoval& removal) const { return removal.keys; }
    Json operator()(const AirplaneModeSwitch& change) const { return change.on; }
    Json operator()(const WifiSwitch& change) const { return change.on; }
    Json operator()(const BluetoothSwitch& change) const { return change.on; }
    Json operator()(const BluetoothConnection& change) const { return change.connected; }
    Json operator()(const CellularDataSwitch& change) const { return change.on; }
    Json operator()(const LocationSwitch& change) const { return change.on; }
    Json operator()(const CallChange& change) const { return wordOf(callStateWords, change.state); }
    Json operator()(const MaxRateChange& change) const {
        return wordOf(dataRateWords, change.rate);
    }
    Json operator()(const ButtonPress&) const { return true; }
    Json operator()(const DiskChange& change) const { return wordOf(diskStateWords, change.state); }
    Json operator()(const SettingsFileChange& change) const {
        return wordOf(settingsFileFaultWords, change.fault);
    }
    Json operator()(const TelephonyServerChange& change) const { return change.answers; }
    Json operator()(const PowerMessage& message) const {
        return Json{{"type", message.type}, {"notification", message.notification}};
    }
    Json operator()(const ClockChange& change) const { return ToJson()(change.to); }
    Json operator()(const MonitorStop&) const { return true; }
};

void writeLine(std::ostream& out, const Json& line) {
    // A file may contain text that is not UTF-8. The invalid bytes are replaced.
    out << line.dump(-1, ' ', false, Json::error_handler_t::replace) << '\n';
}

} // namespace

Json jsonOf(const CallValue& value) {
    return std::visit(ToJson(), value);
}

void TraceWriter::called(const Call& call) {
    if (!hasClock && (call.operation == Operation::time || call.operation == Operation::date))
        return;
    Json line{{"t", number(call.at.secondsSince1970)},
              {"thread", call.onMainThread ? "main" : "monitor"},
              {"op", nameOf(call.operation)}};
    if (!call.arguments.empty()) {
        Json& arguments = line["args"] = Json::array();
        for (const auto& argument : call.arguments)
            arguments.push_back(jsonOf(argument));
    }
    if (call.result)
        line["result"] = jsonOf(*call.result);
    writeLine(out, line);
}

void TraceWriter::happens(const Happening& happening) {
    writeLine(out, Json{{"t", number(happening.at.secondsSince1970)},
                        {"thread", "main"},
                        {"event", nameOf(happening.event)},
                        {"args", std::visit(EventValue(), happening.event)}});
}

void TraceWriter::end(Date at, const std::optional<std::string>& why) {
    writeLine(out, Json{{"t", number(at.secondsSince1970)},
                        {"thread", "main"},
                        {"event", "end"},
                        {"args", why ? Json(*why) : Json()}});
}

} // namespace noctara
