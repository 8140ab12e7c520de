#include "night/scenario_text.h"

#include "night/scenario_times.h"
#include "phones/model/event.h"
#include "phones/model/local_time.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cctype>
#include <sstream>
#include <stdexcept>

namespace noctara {

namespace {

std::string inToml(std::string_view text) {
    std::string quoted = "\"";
    for (const char c : text)
        if (c == '"' || c == '\\')
            quoted += fmt::format("\\{}", c);
        else if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F)
            quoted += fmt::format("\\u{:04X}", c);
        else
            quoted += c;
    return quoted + '"';
}

std::string inToml(const std::string& text) {
    return inToml(std::string_view(text));
}

std::string inToml(bool value) {
    return value ? "true" : "false";
}

std::string inToml(std::int64_t value) {
    return std::to_string(value);
}

std::string inToml(double value) {
    const std::string digits = fmt::format("{}", value);
    const bool isReal = digits.find_first_of(".en") != digits.npos;
    return isReal ? digits : digits + ".0";
}

std::string inToml(Date date) {
    return localText(TimeZone("UTC").components(date)) + 'Z';
}

std::string inToml(const Data&) {
    throw std::logic_error("TOML has no data");
}

std::string inToml(DataRate rate) {
    return inToml(wordOf(dataRateWords, rate));
}

std::string inToml(const PropertyList& value);

template <typename Values>
std::string inToml(const std::vector<Values>& values) {
    std::vector<std::string> texts;
    for (const auto& value : values)
        texts.push_back(inToml(value));
    return fmt::format("[{}]", fmt::join(texts, ", "));
}

std::string key(const std::string& name) {
    const bool isBare = !name.empty() && std::all_of(name.begin(), name.end(), [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) || c == '-' || c == '_';
    });
    return isBare ? name : inToml(name);
}

std::string inToml(const Dictionary& table) {
    std::vector<std::string> entries;
    for (const auto& [name, value] : table)
        entries.push_back(key(name) + " = " + inToml(value));
    return entries.empty() ? "{}" : fmt::format("{{ {} }}", fmt::join(entries, ", "));
}

std::string inToml(const PropertyList& value) {
    return std::visit([](const auto& kind) { return inToml(kind); }, value.variant());
}

std::string inToml(CallState state) {
    return inToml(wordOf(callStateWords, state));
}

std::string inToml(const Posture& posture) {
    if (const auto* sample = std::get_if<Acceleration>(&posture))
        return inToml(std::vector{sample->x, sample->y, sample->z});
    return inToml(wordOf(postureWords, std::get<NamedPosture>(posture)));
}

/// The value of an event. One overload for each kind of event.
struct EventValue {
    std::string operator()(const PostureChange& change) const { return inToml(change.posture); }
    std::string operator()(const ChargerChange& change) const { return inToml(change.plugged); }
    std::string operator()(const SettingsChange& change) const { return inToml(change.changed); }
    std::string operator()(const SettingsRemoval& removal) const { return inToml(removal.keys); }
    std::string operator()(const AirplaneModeSwitch& change) const { return inToml(change.on); }
    std::string operator()(const WifiSwitch& change) const { return inToml(change.on); }
    std::string operator()(const BluetoothSwitch& change) const { return inToml(change.on); }
    std::string operator()(const BluetoothConnection& change) const {
        return inToml(change.connected);
    }
    std::string operator()(const CellularDataSwitch& change) const { return inToml(change.on); }
    std::string operator()(const LocationSwitch& change) const { return inToml(change.on); }
    std::string operator()(const CallChange& change) const { return inToml(change.state); }
    std::string operator()(const MaxRateChange& change) const { return inToml(change.rate); }
    std::string operator()(const ButtonPress&) const { return inToml(true); }
    std::string operator()(const DiskChange& change) const {
        return inToml(wordOf(diskStateWords, change.state));
    }
    std::string operator()(const SettingsFileChange& change) const {
        return inToml(wordOf(settingsFileFaultWords, change.fault));
    }
    std::string operator()(const TelephonyServerChange& change) const {
        return inToml(change.answers);
    }
    std::string operator()(const PowerMessage& message) const {
        return fmt::format("0x{:X}", message.type);
    }
    std::string operator()(const ClockChange& change) const {
        return localText(zone.components(change.to));
    }
    std::string operator()(const MonitorStop&) const { return inToml(true); }

    const TimeZone& zone;
};

class ScenarioWriter {
public:
    explicit ScenarioWriter(const Scenario& written) : scenario(written), zone(written.timezone) {}

    std::string write(const std::vector<WrittenEvent>& events) {
        Scenario defaults;
        writeNight();
        table("[phone]", [&] { writePhone(scenario.phone, defaults.phone); });
        table("[radios]", [&] { writeRadios(scenario.radios, defaults.radios); });
        if (scenario.settings) {
            text += "\n[settings]\n";
            for (const auto& [name, value] : *scenario.settings)
                line(key(name), value);
        }
        for (const auto& application : scenario.applications)
            writeApplication(application);
        for (const auto& wake : scenario.wakes) {
            text += "\n[[wake]]\n";
            line("scheduledby", wake.scheduledBy);
            text += "at = " + timeText(wake.at) + '\n';
        }
        for (const auto& [at, action, value] : events)
            text += fmt::format("\n[[event]]\nat = {}\n{} = {}\n", timeText(at), action, value);
        return text;
    }

private:
    template <typename Value>
    void line(const std::string& name, const Value& value) {
        text += name + " = " + inToml(value) + '\n';
    }

    template <typename Value>
    void unlessDefault(const char* name, const Value& value, const Value& usual) {
        if (value != usual)
            line(name, value);
    }

    /// Leaves out an empty table.
    template <typename Write>
    void table(const std::string& header, Write write) {
        const std::string before = text;
        text += '\n' + header + '\n';
        const std::size_t empty = text.size();
        write();
        if (text.size() == empty)
            text = before;
    }

    void writeNight() {
        unlessDefault("timezone", scenario.timezone, Scenario().timezone);
        text += "start = " + localText(zone.components(scenario.start)) + '\n';
        const DateComponents end = zone.components(scenario.end);
        if (zone.firstDate(end) == scenario.end)
            text += "end = " + localText(end) + '\n';
        else
            line("hours", (scenario.end.secondsSince1970 - scenario.start.secondsSince1970) / 3600);
    }

    void writePhone(const Scenario::Phone& phone, const Scenario::Phone& usual) {
        unlessDefault("bundle", phone.bundle, usual.bundle);
        unlessDefault("machine", phone.machine, usual.machine);
        unlessDefault("idiom", std::int64_t{phone.idiom}, std::int64_t{usual.idiom});
        unlessDefault("corefoundation", phone.corefoundation, usual.corefoundation);
        unlessDefault("capabilities", phone.capabilities, usual.capabilities);
        unlessDefault("rates", phone.rates, usual.rates);
        unlessDefault("telephony_manager", phone.telephonyManager, usual.telephonyManager);
        unlessDefault("telephony_server", phone.telephonyServer, usual.telephonyServer);
        unlessDefault("gestalt", phone.gestalt, usual.gestalt);
        unlessDefault("sounds", phone.sounds, usual.sounds);
        unlessDefault("charger", phone.charger, usual.charger);
        if (inToml(phone.posture) != inToml(usual.posture))
            line("posture", phone.posture);
        unlessDefault("device_motion", phone.deviceMotion, usual.deviceMotion);
        unlessDefault("idle_sleep", phone.idleSleep, usual.idleSleep);
    }

    void writeRadios(const Scenario::Radios& radios, const Scenario::Radios& usual) {
        unlessDefault("airplane", radios.airplane, usual.airplane);
        unlessDefault("wifi", radios.wifi, usual.wifi);
        unlessDefault("wifi_powered", radios.wifiPowered, usual.wifiPowered);
        unlessDefault("bluetooth", radios.bluetooth, usual.bluetooth);
        unlessDefault("bluetooth_connected", radios.bluetoothConnected, usual.bluetoothConnected);
        unlessDefault("cellular_data", radios.cellularData, usual.cellularData);
        unlessDefault("max_rate", radios.maxRate, usual.maxRate);
        unlessDefault("location", radios.location, usual.location);
        unlessDefault("push", radios.push, usual.push);
        unlessDefault("tethering", radios.tethering, usual.tethering);
        unlessDefault("call", radios.call, usual.call);
    }

    void writeApplication(const Scenario::Application& application) {
        text += "\n[[application]]\n";
        line("identifier", application.identifier);
        unlessDefault("name", application.name, application.identifier);
        unlessDefault("running", application.running, application.front);
        unlessDefault("icon", application.icon, true);
        unlessDefault("front", application.front, false);
    }

    /// With the date, unless the local time occurs twice and this is its second occurrence.
    std::string timeText(Date at) const {
        const DateComponents parts = zone.components(at);
        const std::string whole = localText(parts);
        return zone.firstDate(parts) == at ? whole : whole.substr(whole.find('T') + 1);
    }

    const Scenario& scenario;
    const TimeZone zone;
    std::string text;
};

} // namespace

std::vector<WrittenEvent> writtenEvents(const Scenario& scenario) {
    const TimeZone zone(scenario.timezone);
    std::vector<WrittenEvent> events;
    for (const auto& [at, event] : scenario.events)
        events.push_back({at, std::string(nameOf(event)), std::visit(EventValue{zone}, event)});
    return events;
}

std::string scenarioText(const Scenario& scenario, const std::string& comment) {
    std::string text;
    std::istringstream lines(comment);
    for (std::string line; std::getline(lines, line);)
        text += "# " + line + '\n';
    return text + scenarioText(scenario, writtenEvents(scenario));
}

std::string scenarioText(const Scenario& scenario, const std::vector<WrittenEvent>& events) {
    return ScenarioWriter(scenario).write(events);
}

} // namespace noctara
