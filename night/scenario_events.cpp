/// The events of a scenario file.
#include "night/scenario_events.h"

#include "night/scenario_times.h"
#include "night/scenario_values.h"

#include <array>
#include <cstdint>
#include <limits>

namespace noctara {

namespace {

PropertyList truth(const TomlValue& value, const TimeZone&) {
    return value.boolean();
}

PropertyList onlyTrue(const TomlValue& value, const TimeZone&) {
    return value.onlyTrue();
}

PropertyList removedKeys(const TomlValue& value, const TimeZone&) {
    Array keys;
    for (std::string& key : value.texts())
        keys.emplace_back(std::move(key));
    return keys;
}

struct Action {
    std::string_view name;
    PropertyList (*read)(const TomlValue&, const TimeZone&);
};

const std::array actions{
    Action{"posture", [](const TomlValue& value, const TimeZone&) { return readPosture(value); }},
    Action{"charger", truth},
    Action{"settings",
           [](const TomlValue& value, const TimeZone& zone) -> PropertyList {
               return readSettings(value, zone);
           }},
    Action{"remove_settings", removedKeys},
    Action{"airplane", truth},
    Action{"wifi", truth},
    Action{"bluetooth", truth},
    Action{"bluetooth_connected", truth},
    Action{"cellular_data", truth},
    Action{"location", truth},
    Action{"call",
           [](const TomlValue& value, const TimeZone&) -> PropertyList {
               return value.oneOf(callStates);
           }},
    Action{"max_rate",
           [](const TomlValue& value, const TimeZone&) -> PropertyList {
               return value.oneOf(dataRates);
           }},
    Action{"button", onlyTrue},
    Action{"disk",
           [](const TomlValue& value, const TimeZone&) -> PropertyList {
               return value.oneOf({"ok", "full", "read-only"});
           }},
    Action{"settings_file",
           [](const TomlValue& value, const TimeZone&) -> PropertyList {
               return value.oneOf({"missing", "damaged"});
           }},
    Action{"telephony_server", truth},
    Action{"power_message",
           [](const TomlValue& value, const TimeZone&) -> PropertyList {
               return value.integer(0, std::numeric_limits<std::uint32_t>::max());
           }},
    Action{"clock",
           [](const TomlValue& value, const TimeZone& zone) -> PropertyList {
               return instantOf(writtenTime(value, TimeForm::WithDay), zone);
           }},
    Action{"stop", onlyTrue},
};

Event readEvent(const TomlValue& value, const TimeZone& zone, Date previous, bool isFirst) {
    Choices actionNames;
    for (const Action& action : actions)
        actionNames.push_back(action.name);
    Choices keys = actionNames;
    keys.insert(keys.begin(), "at");
    const TomlTable table(value, keys);

    const TomlValue at = table.require("at");
    Event event{instantOrNext(writtenTime(at, TimeForm::DayOptional), zone, previous), {}, false};
    if (event.at < previous)
        at.refuse("at is before " + std::string(isFirst ? "the start, " : "the previous event, ") +
                      localText(zone.components(previous)),
                  "write the events in order");

    for (const TomlValue& entry : value.entries({})) {
        if (entry.name() == "at")
            continue;
        if (!event.action.empty())
            entry.refuse("the event has both " + event.action + " and " + entry.name(),
                         "give each event one action");
        for (const Action& action : actions) {
            if (action.name == entry.name())
                event.value = action.read(entry, zone);
        }
        event.action = entry.name();
    }
    if (event.action.empty())
        value.refuse("[[event]] has no action", listed(actionNames));
    return event;
}

} // namespace

std::vector<Event> readEvents(const std::vector<TomlValue>& tables, const TimeZone& zone,
                              Date start) {
    std::vector<Event> events;
    for (const TomlValue& table : tables)
        events.push_back(
            readEvent(table, zone, events.empty() ? start : events.back().at, events.empty()));
    return events;
}

} // namespace noctara
