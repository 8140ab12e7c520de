/// The events of a scenario file.
#include "night/scenario_events.h"

#include "night/scenario_times.h"
#include "night/scenario_values.h"

#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <utility>

namespace noctara {

namespace {

/// Reads the value of an event. One overload for each kind of event. A missing overload is a
/// compile error.
struct EventValue {
    PostureChange operator()(const PostureChange*) const { return {readPosture(value)}; }
    ChargerChange operator()(const ChargerChange*) const { return {value.boolean()}; }
    SettingsChange operator()(const SettingsChange*) const { return {readSettings(value, zone)}; }
    SettingsRemoval operator()(const SettingsRemoval*) const { return {value.texts()}; }
    AirplaneModeSwitch operator()(const AirplaneModeSwitch*) const { return {value.boolean()}; }
    WifiSwitch operator()(const WifiSwitch*) const { return {value.boolean()}; }
    BluetoothSwitch operator()(const BluetoothSwitch*) const { return {value.boolean()}; }
    BluetoothConnection operator()(const BluetoothConnection*) const { return {value.boolean()}; }
    CellularDataSwitch operator()(const CellularDataSwitch*) const { return {value.boolean()}; }
    LocationSwitch operator()(const LocationSwitch*) const { return {value.boolean()}; }
    CallChange operator()(const CallChange*) const { return {value.oneOf(callStateWords)}; }
    MaxRateChange operator()(const MaxRateChange*) const { return {value.oneOf(dataRateWords)}; }
    DiskChange operator()(const DiskChange*) const { return {value.oneOf(diskStateWords)}; }
    SettingsFileChange operator()(const SettingsFileChange*) const {
        return {value.oneOf(settingsFileFaultWords)};
    }
    TelephonyServerChange operator()(const TelephonyServerChange*) const {
        return {value.boolean()};
    }
    PowerMessage operator()(const PowerMessage*) const {
        constexpr std::int64_t greatest = std::numeric_limits<std::uint32_t>::max();
        return {static_cast<std::uint32_t>(value.integer(0, greatest))};
    }
    ClockChange operator()(const ClockChange*) const {
        return {instantOf(writtenTime(value, TimeForm::WithDay), zone)};
    }
    ButtonPress operator()(const ButtonPress*) const {
        value.requireTrue();
        return {};
    }
    MonitorStop operator()(const MonitorStop*) const {
        value.requireTrue();
        return {};
    }

    const TomlValue& value;
    const TimeZone& zone;
};

struct EventReader {
    std::string_view name;
    Event (*read)(const EventValue&);
};

/// A reader for each kind of event, in the order of the variant.
template <std::size_t... kinds>
constexpr auto readersOf(std::index_sequence<kinds...>) {
    return std::array{EventReader{
        std::variant_alternative_t<kinds, Event>::name, [](const EventValue& value) -> Event {
            return value(static_cast<const std::variant_alternative_t<kinds, Event>*>(nullptr));
        }}...};
}

constexpr auto readers = readersOf(std::make_index_sequence<std::variant_size_v<Event>>());

ScheduledEvent readEvent(const TomlValue& value, const TimeZone& zone, Date previous,
                         bool isFirst) {
    Choices names;
    for (const auto& reader : readers)
        names.push_back(reader.name);
    Choices keys = names;
    keys.insert(keys.begin(), "at");
    const TomlTable table(value, keys);

    const TomlValue at = table.require("at");
    const Date instant = instantOrNext(writtenTime(at, TimeForm::DayOptional), zone, previous);
    if (instant < previous)
        at.refuse("at is before " + std::string(isFirst ? "the start, " : "the previous event, ") +
                      localText(zone.components(previous)),
                  "write the events in order");

    std::optional<Event> event;
    for (const TomlValue& entry : value.entries({})) {
        if (entry.name() == "at")
            continue;
        if (event)
            entry.refuse("the event has both " + std::string(nameOf(*event)) + " and " +
                             entry.name(),
                         "give each event one action");
        for (const auto& reader : readers)
            if (reader.name == entry.name())
                event = reader.read({entry, zone});
    }
    if (!event)
        value.refuse("[[event]] has no action", listed(names));
    return {instant, *std::move(event)};
}

} // namespace

std::vector<ScheduledEvent> readEvents(const std::vector<TomlValue>& tables, const TimeZone& zone,
                                       Date start) {
    std::vector<ScheduledEvent> events;
    for (const TomlValue& table : tables)
        events.push_back(
            readEvent(table, zone, events.empty() ? start : events.back().at, events.empty()));
    return events;
}

} // namespace noctara
