/// Property lists as the settings file and as the list of wake-ups that the monitor reads.
#include "monitor/noctara_thread.h"
#include "phones/model/property_list_date.h"
#include "phones/model/property_list_file.h"
#include "phones/simulated/simulated_phone.h"
#include "platform/wake_scheduler.h"
#include "settings/setting_keys.h"
#include "tests/fuzz/rules.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace noctara {
namespace {

ParsedPropertyList parsed(std::string_view bytes) {
    ParsedPropertyList list = parsePropertyList(bytes);
    require(list.value.has_value() == list.error.empty(), "there is a value or an error");
    if (!list.value)
        requireOneLine(list.error);
    return list;
}

/// The value as XML can hold it: dates have no fractions.
PropertyList inXml(const PropertyList& value) {
    if (const auto* date = value.as<Date>())
        return Date{std::clamp(std::floor(date->secondsSince1970),
                               static_cast<double>(earliestPropertyListDate),
                               static_cast<double>(latestPropertyListDate))};
    if (const auto* array = value.as<Array>()) {
        Array items;
        for (const auto& item : *array)
            items.push_back(inXml(item));
        return items;
    }
    if (const auto* dictionary = value.as<Dictionary>()) {
        Dictionary entries;
        for (const auto& [key, entry] : *dictionary)
            entries.set(key, inXml(entry));
        return entries;
    }
    return value;
}

bool hasNaN(const PropertyList& value) {
    if (const auto* real = value.as<double>())
        return std::isnan(*real);
    if (const auto* array = value.as<Array>())
        return std::any_of(array->begin(), array->end(), hasNaN);
    if (const auto* dictionary = value.as<Dictionary>())
        return std::any_of(dictionary->begin(), dictionary->end(),
                           [](const auto& entry) { return hasNaN(entry.value); });
    return false;
}

void requireWrittenReadsBack(const PropertyList& value) {
    const std::string xml = propertyListXml(value);
    const auto again = parsed(xml);
    // XML may be larger than the limit, even if the binary form is not.
    if (!again.value)
        return require(again.error == "larger than 1 MiB", "a written list reads back",
                       again.error);
    require(hasNaN(value) || *again.value == inXml(value), "a written list reads back equal", xml);
    require(propertyListXml(*again.value) == xml, "a list that is written again is the same", xml);
}

/// Every file of the phone is this list until it is written.
class FilesOfOneList final : public Files {
public:
    explicit FilesOfOneList(ParsedPropertyList content) : list(std::move(content)) {}

    bool exists(const std::string&) override { return true; }
    std::optional<Dictionary> readDictionary(const std::string&) override {
        const auto* dictionary = list.value ? list.value->as<Dictionary>() : nullptr;
        return dictionary ? std::optional(*dictionary) : std::nullopt;
    }
    bool writeDictionary(const std::string&, const Dictionary& dictionary) override {
        auto written = parsed(propertyListXml(dictionary));
        if (!written.value)
            return false;
        list = std::move(written);
        ++writes;
        return true;
    }
    std::shared_ptr<const PropertyList> parse(const std::string&, std::string& error) override {
        error = list.error;
        return list.value ? std::make_shared<const PropertyList>(*list.value) : nullptr;
    }

    int writes = 0;

private:
    ParsedPropertyList list;
};

class ListOfWakes final : public WakeScheduler {
public:
    void schedule(Date date, const std::string& identifier) override {
        require(identifier == "com.quorbit.Noctara", "the monitor's own wake-up is scheduled");
        scheduled.push_back(date);
    }
    void cancel(Date date, const std::string& identifier) override {
        require(identifier == "com.quorbit.Noctara", "the monitor's own wake-up is cancelled");
        cancelled.push_back(date);
    }

    std::vector<Date> scheduled;
    std::vector<Date> cancelled;
};

/// What counts of the settings file besides the switches.
auto numbersOf(const NoctaraThread& monitor) {
    return std::vector<std::int32_t>{monitor.sleepTime,      monitor.sensitivity, monitor.startTime,
                                     monitor.stopTime,       monitor.screenDown,  monitor.timeLimit,
                                     monitor.airplaneSwitch, monitor.wifiSwitch};
}

void requireReloaded(const NoctaraThread& monitor, const Dictionary& before) {
    const auto number = [&](const char* key, std::int32_t now) {
        if (const auto* value = before.find(key))
            require(value->intValue() == now, "a number of the file counts", key);
    };
    const auto truth = [&](const char* key, bool now) {
        if (const auto* value = before.find(key))
            require(value->boolValue() == now, "a switch of the file counts", key);
    };
    number("Sensitivity", monitor.sensitivity);
    number("StartHour", monitor.startTime);
    number("StopHour", monitor.stopTime);
    truth("ScreenDown", monitor.screenDown);
    truth("TimeLimit", monitor.timeLimit);
    truth("AirplaneSwitch", monitor.airplaneSwitch);
    require(monitor.applicationsToStart == applicationsToLaunch(before),
            "the applications of the file are launched");
}

/// What the monitor adds to a file is what the file lacks.
void requireFilledIn(const Dictionary& before, const Dictionary& after) {
    for (const auto& [key, value] : before) {
        const auto* kept = after.find(key);
        require(kept && (hasNaN(value) || *kept == value || *kept == inXml(value)),
                "a value of the file stays", key);
    }
    for (const auto& entry : after)
        require(before.find(entry.key) || findSettingKey(entry.key), "only settings are added",
                entry.key);
}

void reload(SimulatedPhone& phone, const ParsedPropertyList& list) {
    FilesOfOneList files(list);
    const auto before = files.readDictionary("");
    Platform platform = phone.platform();
    platform.files = &files;
    NoctaraThread monitor(platform);
    const auto defaults = numbersOf(monitor);
    monitor.reloadPreferences();
    if (!before) {
        require(files.writes == 0, "an unreadable file is not written");
        require(numbersOf(monitor) == defaults, "an unreadable file changes no setting");
        return;
    }
    requireReloaded(monitor, *before);
    const auto after = files.readDictionary("");
    require(after.has_value(), "the file can be read after a reload");
    requireFilledIn(*before, *after);
    const auto hasAllKeys = std::ranges::all_of(
        settingKeys(), [&](const auto& key) { return after->find(key.name) != nullptr; });
    const int writes = files.writes;
    monitor.reloadPreferences();
    require(!hasAllKeys || files.writes == writes, "a file with all keys is not written");
}

void renewWakeUp(SimulatedPhone& phone, const ParsedPropertyList& list) {
    FilesOfOneList files(list);
    ListOfWakes wakes;
    Platform platform = phone.platform();
    platform.files = &files;
    platform.wakes = &wakes;
    NoctaraThread monitor(platform);
    monitor.awakeApp();
    const bool readable = list.value.has_value();
    require(wakes.scheduled.size() == (readable ? 1 : 0),
            "one wake-up is scheduled if the list can be read");
    require(readable || wakes.cancelled.empty(), "nothing of an unreadable list is cancelled");
    if (readable)
        require(wakes.scheduled[0].secondsSince1970 == phone.now().secondsSince1970 + 900,
                "the wake-up is 15 minutes ahead");
    require(files.writes == 0, "the list of wake-ups is not written");
}

} // namespace
} // namespace noctara

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace noctara;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto list = parsed(bytes);
    if (list.value)
        requireWrittenReadsBack(*list.value);
    SimulatedPhone phone(Scenario{});
    reload(phone, list);
    renewWakeUp(phone, list);
    return 0;
}
