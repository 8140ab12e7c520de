/// Scenario files: the night, the phone and its applications.
#include "night/scenario_file.h"

#include "input/bad_input.h"
#include "input/file_reading.h"
#include "input/printable.h"
#include "night/scenario_events.h"
#include "night/scenario_times.h"
#include "night/scenario_values.h"
#include "night/time_zone_names.h"
#include "night/toml_reader.h"
#include "phones/model/local_time.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace noctara {

namespace {

constexpr std::int64_t hoursPerWeek = 168;
constexpr std::int64_t secondsPerWeek = hoursPerWeek * 3600;
constexpr double defaultHours = 9.5;

TimeZone readTimeZone(const TomlTable& file, const ScenarioOverrides& overrides) {
    std::string name = Scenario().timezone;
    std::string place;
    if (overrides.timezone) {
        name = *overrides.timezone;
        place = "--timezone";
    } else if (const auto timezone = file.find("timezone")) {
        name = timezone->text();
        place = timezone->place();
    }
    try {
        return TimeZone(name);
    } catch (const std::runtime_error&) {
        throw BadInput(place + (place.empty() ? "" : ": ") + "there is no time zone " +
                       inQuotes(name) + "; " + adviceOnTimeZone(name));
    }
}

Date readStart(const TomlTable& file, const TimeZone& zone, const ScenarioOverrides& overrides) {
    if (overrides.start)
        return instantOf(writtenTime("--start", *overrides.start, TimeForm::WithDay), zone);
    if (const auto start = file.find("start"))
        return instantOf(writtenTime(*start, TimeForm::WithDay), zone);
    return zone.date({2014, 3, 1, 22, 30, 0});
}

Date after(Date from, double seconds) {
    return {from.secondsSince1970 + seconds};
}

/// The end that the file or the option gives as a time, instead of a duration.
Date readGivenEnd(const WrittenTime& written, const TimeZone& zone, Date start) {
    const Date end = instantOrNext(written, zone, after(start, 1));
    const std::string startText = localText(zone.components(start));
    if (end <= start)
        throw BadInput(written.place + ": the end is not after the start, " + startText +
                       "; write a later one");
    if (end > after(start, secondsPerWeek))
        throw BadInput(written.place + ": the end is more than a week after the start, " +
                       startText + "; at most a week is accepted");
    return end;
}

Date readEnd(const TomlTable& file, const TimeZone& zone, Date start,
             const ScenarioOverrides& overrides) {
    if (overrides.end)
        return readGivenEnd(writtenTime("--end", *overrides.end, TimeForm::DayOptional), zone,
                            start);
    const auto end = file.find("end");
    const auto hours = file.find("hours");
    if (end && hours)
        hours->refuse("there are both end and hours", "give one of them");
    if (end)
        return readGivenEnd(writtenTime(*end, TimeForm::WithDay), zone, start);
    if (!hours)
        return after(start, defaultHours * 3600);

    const double seconds = std::round(hours->real() * 3600);
    if (seconds < 1 || seconds > secondsPerWeek)
        hours->refuse("hours is out of range", "write a number of at least a second, at most " +
                                                   std::to_string(hoursPerWeek) + " (a week)");
    return after(start, seconds);
}

Scenario::Phone readPhone(const TomlValue& value) {
    const TomlTable table(value, {"bundle", "machine", "idiom", "corefoundation", "capabilities",
                                  "rates", "telephony_manager", "telephony_server", "gestalt",
                                  "sounds", "charger", "posture", "device_motion", "idle_sleep"});
    Scenario::Phone phone;
    table.readNonEmpty("bundle", phone.bundle);
    table.readNonEmpty("machine", phone.machine);
    // The list of capabilities prints it as it is.
    if (printable(phone.machine) != phone.machine)
        table.require("machine").refuse("machine has a control character",
                                        "write a name such as \"iPhone4,1\"");
    if (const auto idiom = table.find("idiom"))
        phone.idiom =
            static_cast<std::int32_t>(idiom->integer(0, std::numeric_limits<std::int32_t>::max()));
    if (const auto version = table.find("corefoundation"))
        phone.corefoundation = version->real();
    if (const auto capabilities = table.find("capabilities"))
        phone.capabilities = capabilities->texts();
    if (const auto rates = table.find("rates")) {
        phone.rates.clear();
        for (const TomlValue& rate : rates->elements("write an array of rates: 2G, 3G, 4G"))
            phone.rates.push_back(rate.oneOf(dataRateWords));
    }
    table.read("telephony_manager", phone.telephonyManager);
    table.read("telephony_server", phone.telephonyServer);
    table.read("gestalt", phone.gestalt);
    table.read("sounds", phone.sounds);
    table.read("charger", phone.charger);
    if (const auto posture = table.find("posture"))
        phone.posture = readPosture(*posture);
    table.read("device_motion", phone.deviceMotion);
    if (const auto idleSleep = table.find("idle_sleep"))
        phone.idleSleep = idleSleep->integer(0, secondsPerWeek);
    return phone;
}

Scenario::Radios readRadios(const TomlValue& value) {
    const TomlTable table(value,
                          {"airplane", "wifi", "wifi_powered", "bluetooth", "bluetooth_connected",
                           "cellular_data", "max_rate", "location", "push", "tethering", "call"});
    Scenario::Radios radios;
    table.read("airplane", radios.airplane);
    table.read("wifi", radios.wifi);
    table.read("wifi_powered", radios.wifiPowered);
    table.read("bluetooth", radios.bluetooth);
    table.read("bluetooth_connected", radios.bluetoothConnected);
    table.read("cellular_data", radios.cellularData);
    table.readOneOf("max_rate", dataRateWords, radios.maxRate);
    table.read("location", radios.location);
    table.read("push", radios.push);
    table.read("tethering", radios.tethering);
    table.readOneOf("call", callStateWords, radios.call);
    return radios;
}

std::vector<Scenario::Application> readApplications(const std::vector<TomlValue>& tables) {
    std::vector<Scenario::Application> applications;
    for (const TomlValue& value : tables) {
        const TomlTable table(value, {"identifier", "name", "running", "icon", "front"});
        Scenario::Application application;
        const TomlValue identifier = table.require("identifier");
        application.identifier = identifier.nonEmptyText();
        const auto has = [&](auto condition) {
            return std::any_of(applications.begin(), applications.end(), condition);
        };
        if (has([&](const auto& other) { return other.identifier == application.identifier; }))
            identifier.refuse("there is already an application " + inQuotes(application.identifier),
                              "give each application an identifier of its own");
        const auto name = table.find("name");
        application.name = name ? name->text() : application.identifier;
        table.read("icon", application.icon);
        table.read("front", application.front);
        application.running = application.front;
        table.read("running", application.running);
        if (application.front && !application.running)
            table.require("front").refuse("front is true, but running is false",
                                          "an application in front has to run");
        if (application.front && has([](const auto& other) { return other.front; }))
            table.require("front").refuse("another application is in front already",
                                          "only one is accepted");
        applications.push_back(std::move(application));
    }
    return applications;
}

std::vector<Scenario::Wake> readWakes(const std::vector<TomlValue>& tables, const TimeZone& zone,
                                      Date start) {
    std::vector<Scenario::Wake> wakes;
    for (const TomlValue& value : tables) {
        const TomlTable table(value, {"scheduledby", "at"});
        const WrittenTime at = writtenTime(table.require("at"), TimeForm::DayOptional);
        wakes.push_back({table.require("scheduledby").nonEmptyText(),
                         instantOrNext(at, zone, after(start, 1))});
    }
    return wakes;
}

std::string readText(const std::filesystem::path& file) {
    try {
        return readFile(file, 1);
    } catch (const UnreadableFile& error) {
        throw BadInput(file.string() + ": " + error.what() + "; give the name of a scenario file");
    }
}

} // namespace

Scenario readScenario(const std::filesystem::path& file, const ScenarioOverrides& overrides) {
    return parseScenario(readText(file), file.string(), overrides);
}

Scenario parseScenario(std::string_view text, const std::string& nameForErrors,
                       const ScenarioOverrides& overrides) {
    const toml::table document = parseToml(text, nameForErrors);
    const TomlTable file(
        TomlValue("the scenario", document, std::make_shared<const std::string>(nameForErrors)),
        {"start", "end", "hours", "timezone", "phone", "radios", "settings", "application", "wake",
         "event"});
    const TimeZone zone = readTimeZone(file, overrides);

    Scenario scenario;
    scenario.timezone = zone.name();
    scenario.start = readStart(file, zone, overrides);
    scenario.end = readEnd(file, zone, scenario.start, overrides);
    if (const auto phone = file.find("phone"))
        scenario.phone = readPhone(phone->sibling("[phone]", phone->node()));
    if (const auto radios = file.find("radios"))
        scenario.radios = readRadios(radios->sibling("[radios]", radios->node()));
    if (const auto settings = file.find("settings"))
        scenario.settings = readSettings(settings->sibling("[settings]", settings->node()), zone);
    scenario.applications = readApplications(file.tables("application"));
    scenario.wakes = readWakes(file.tables("wake"), zone, scenario.start);
    scenario.events = readEvents(file.tables("event"), zone, scenario.start);
    return scenario;
}

} // namespace noctara
