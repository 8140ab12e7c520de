#include "night/trace_reader.h"

#include "input/bad_input.h"
#include "output/interruption.h"

#include <array>
#include <limits>
#include <utility>

namespace noctara {

namespace {

Data dataOf(std::string_view base64) {
    constexpr std::string_view digits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    Data data;
    std::uint32_t group = 0;
    int bits = 0;
    for (const char c : base64) {
        const auto digit = digits.find(c);
        if (digit == digits.npos)
            break;
        group = group << 6 | static_cast<std::uint32_t>(digit);
        bits += 6;
        if (bits >= 8) {
            bits -= 8;
            data.push_back(static_cast<std::uint8_t>(group >> bits & 0xFF));
        }
    }
    return data;
}

template <typename Words>
auto valueNamed(const Words& words, const Json& word) {
    if (const auto value = valueOf(words, word.get<std::string>()))
        return *value;
    throw std::invalid_argument(inQuotes(word.get<std::string>()) + " is not one of its values");
}

/// A number that JSON cannot hold.
double realNamed(std::string_view name) {
    using Limits = std::numeric_limits<double>;
    if (name == "nan")
        return Limits::quiet_NaN();
    return name == "inf" ? Limits::infinity() : -Limits::infinity();
}

/// Reads the value of an event. One overload for each kind of event. A missing overload is a
/// compile error.
struct EventReader {
    PostureChange operator()(const PostureChange*) const {
        if (value.is_array())
            return {Acceleration{value.at(0), value.at(1), value.at(2)}};
        return {valueNamed(postureWords, value)};
    }
    ChargerChange operator()(const ChargerChange*) const { return {value.get<bool>()}; }
    SettingsChange operator()(const SettingsChange*) const {
        return {dictionaryOf(value).value_or(Dictionary())};
    }
    SettingsRemoval operator()(const SettingsRemoval*) const {
        return {value.get<std::vector<std::string>>()};
    }
    AirplaneModeSwitch operator()(const AirplaneModeSwitch*) const { return {value.get<bool>()}; }
    WifiSwitch operator()(const WifiSwitch*) const { return {value.get<bool>()}; }
    BluetoothSwitch operator()(const BluetoothSwitch*) const { return {value.get<bool>()}; }
    BluetoothConnection operator()(const BluetoothConnection*) const { return {value.get<bool>()}; }
    CellularDataSwitch operator()(const CellularDataSwitch*) const { return {value.get<bool>()}; }
    LocationSwitch operator()(const LocationSwitch*) const { return {value.get<bool>()}; }
    CallChange operator()(const CallChange*) const { return {valueNamed(callStateWords, value)}; }
    MaxRateChange operator()(const MaxRateChange*) const {
        return {valueNamed(dataRateWords, value)};
    }
    ButtonPress operator()(const ButtonPress*) const { return {}; }
    DiskChange operator()(const DiskChange*) const { return {valueNamed(diskStateWords, value)}; }
    SettingsFileChange operator()(const SettingsFileChange*) const {
        return {valueNamed(settingsFileFaultWords, value)};
    }
    TelephonyServerChange operator()(const TelephonyServerChange*) const {
        return {value.get<bool>()};
    }
    PowerMessage operator()(const PowerMessage*) const {
        return {value.at("type").get<std::uint32_t>(),
                value.at("notification").get<std::int64_t>()};
    }
    ClockChange operator()(const ClockChange*) const { return {{value.at("date").get<double>()}}; }
    MonitorStop operator()(const MonitorStop*) const { return {}; }

    const Json& value;
};

template <std::size_t kind = 0>
Event eventNamed(const std::string& name, const Json& value) {
    if constexpr (kind < std::variant_size_v<Event>) {
        using Kind = std::variant_alternative_t<kind, Event>;
        if (name == Kind::name)
            return EventReader{value}(static_cast<const Kind*>(nullptr));
        return eventNamed<kind + 1>(name, value);
    } else {
        throw std::invalid_argument("there is no event " + inQuotes(name));
    }
}

TraceLine lineOf(const Json& json, std::size_t number) {
    TraceLine line{number, {json.at("t").get<double>()}, json.at("thread") == "main", TraceEnd{}};
    if (json.contains("op")) {
        const auto name = json.at("op").get<std::string>();
        const auto operation = operationNamed(name);
        if (!operation)
            throw std::invalid_argument("there is no operation " + inQuotes(name));
        line.what =
            TracedCall{*operation, json.value("args", Json::array()), json.value("result", Json())};
    } else if (const auto name = json.at("event").get<std::string>(); name == "end") {
        const Json& why = json.at("args");
        line.what =
            TraceEnd{why.is_string() ? std::optional(why.get<std::string>()) : std::nullopt};
    } else {
        line.what = eventNamed(name, json.at("args"));
    }
    return line;
}

} // namespace

PropertyList propertyListOf(const Json& value) {
    if (value.is_boolean())
        return value.get<bool>();
    if (value.is_number_integer())
        return value.get<std::int64_t>();
    if (value.is_number())
        return value.get<double>();
    if (value.is_array()) {
        Array array;
        for (const auto& item : value)
            array.push_back(propertyListOf(item));
        return array;
    }
    if (value.is_object() && value.size() == 1) {
        const auto only = value.begin();
        if (only.key() == "date" && only->is_number())
            return Date{only->get<double>()};
        if (only.key() == "data" && only->is_string())
            return dataOf(only->get<std::string>());
        if (only.key() == "real" && only->is_string())
            return realNamed(only->get<std::string>());
        if (only.key() == "dictionary" && only->is_object())
            return dictionaryOf(*only).value_or(Dictionary());
    }
    if (auto dictionary = dictionaryOf(value))
        return *std::move(dictionary);
    return value.is_string() ? value.get<std::string>() : std::string();
}

std::optional<Dictionary> dictionaryOf(const Json& value) {
    if (!value.is_object())
        return std::nullopt;
    Dictionary dictionary;
    for (const auto& [key, item] : value.items())
        dictionary.set(key, propertyListOf(item));
    return dictionary;
}

const TraceLine* TraceReader::peek() {
    std::string text;
    const bool isRead = !head && std::getline(in, text);
    // A signal ends a read, so that the line may be incomplete.
    stopIfInterrupted();
    if (isRead) {
        ++number;
        try {
            head = lineOf(Json::parse(text), number);
        } catch (const std::exception& error) {
            throw BadInput(streamName + ':' + std::to_string(number) + ": is no line of a trace: " +
                           error.what() + "; give a file that --trace has written");
        }
    }
    return head ? &*head : nullptr;
}

} // namespace noctara
