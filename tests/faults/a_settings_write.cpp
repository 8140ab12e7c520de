#include "tests/faults/a_settings_write.h"

#include "command/program.h"
#include "input/command_line.h"
#include "monitor/noctara_thread.h"
#include "phones/model/property_list_file.h"
#include "phones/simulated/simulated_phone.h"
#include "settings/setting_keys.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <memory>
#include <utility>

namespace noctara {

namespace fs = std::filesystem;

namespace {

/// A monitor that has not loaded its settings, on a phone whose files are real.
struct Monitor final : MonitorObserver, PhoneObserver {
    explicit Monitor(const fs::path& root) :
        phone(Scenario(), makeDirectoryFileStore(root)), monitor(phone.platform(), this) {
        phone.observe(*this);
    }

    void decided(const Decision& decision) override {
        hasFailed = hasFailed || std::holds_alternative<SettingsFileUnreadable>(decision);
    }
    void called(const Call& call) override {
        const auto* text = call.operation == Operation::NSLog
                               ? std::get_if<std::string_view>(&call.arguments[0])
                               : nullptr;
        hasFailed = hasFailed || (text && text->find("COULD NOT be created") != text->npos);
    }
    void happens(const Happening&) override {}

    SimulatedPhone phone;
    NoctaraThread monitor;
    bool hasFailed = false; ///< The monitor said so.
};

std::function<int()> onMonitor(const fs::path& root, void (*work)(NoctaraThread&)) {
    return [monitor = std::make_shared<Monitor>(root), work] {
        work(monitor->monitor);
        return monitor->hasFailed ? 1 : 0;
    };
}

int command(std::vector<std::string> arguments) {
    std::vector<char*> pointers;
    std::ranges::transform(arguments, std::back_inserter(pointers),
                           [](std::string& argument) { return argument.data(); });
    CLI::App app;
    Action action;
    describeProgram(app, action);
    return runCommandLine(app, static_cast<int>(pointers.size()), pointers.data(),
                          [&] { return action(); });
}

Dictionary with(Dictionary dictionary, const char* key, const PropertyList& value) {
    dictionary.set(key, value);
    return dictionary;
}

/// The monitor writes a switch as a number when it fills it in.
Dictionary inNumbers(Dictionary settings) {
    for (const auto& key : settingKeys())
        if (const auto* value = settings.find(key.name))
            settings.set(key.name, value->intValue());
    return settings;
}

/// The file that the monitor makes, and the same with the key that it lacks.
Dictionary madeByMonitor(bool filledIn) {
    const TemporaryFolder folder;
    SimulatedPhone phone(Scenario(), makeDirectoryFileStore(folder.path));
    NoctaraThread(phone.platform()).reloadPreferences();
    auto content = phone.files.content(settingsFilePath);
    Dictionary made = *content.value->as<Dictionary>();
    if (!filledIn)
        made.remove("PhoneSwitch");
    return inNumbers(made);
}

} // namespace

fs::path ASettingsWrite::fileBelow(const fs::path& root) {
    return root / fs::path(settingsFilePath).relative_path();
}

void ASettingsWrite::prepare() {
    fs::remove_all(root);
    fs::create_directory(root);
    if (!GetParam().before)
        return;
    fs::create_directories(fileBelow(root).parent_path());
    ASSERT_TRUE(writePropertyListFile(fileBelow(root), *GetParam().before));
    fs::permissions(fileBelow(root), static_cast<fs::perms>(0640));
}

TracedRun ASettingsWrite::write(const std::optional<Fault>& fault) {
    return traced(GetParam().make(root), fault);
}

std::optional<Dictionary> ASettingsWrite::content() const {
    if (!fs::exists(fileBelow(root)))
        return std::nullopt;
    const auto file = readPropertyListFile(fileBelow(root));
    EXPECT_TRUE(file.value) << file.error;
    const auto* dictionary = file.value ? file.value->as<Dictionary>() : nullptr;
    return dictionary ? std::optional(inNumbers(*dictionary)) : std::nullopt;
}

void ASettingsWrite::expectWhole(const std::string& disturbed) const {
    const auto now = content();
    EXPECT_TRUE(isOld(now) || (now && std::ranges::count(GetParam().stages, *now) == 1))
        << disturbed;
    if (GetParam().before) {
        EXPECT_EQ(static_cast<int>(fs::status(fileBelow(root)).permissions()), 0640) << disturbed;
    }
}

std::ptrdiff_t ASettingsWrite::leftOver() const {
    const fs::path parent = fileBelow(root).parent_path();
    return !fs::exists(parent)
               ? 0
               : std::count_if(
                     fs::directory_iterator(parent), fs::directory_iterator(),
                     [](const auto& entry) { return entry.path().filename().string()[0] == '.'; });
}

std::string described(const SystemCall& call) {
    return "system call " + std::to_string(call.number) + " on " + call.files;
}

std::vector<Writer> writers() {
    const Dictionary some{{"Enabled", 1}, {"StartHour", 22}, {"Other", "kept"}};
    return {
        {"TheMonitorFillsInAKey",
         some,
         {with(some, "Sensitivity", 5)},
         [](const fs::path& root) {
             return onMonitor(root, [](NoctaraThread& monitor) {
                 monitor.saveValueToFile(settingsFilePath, "Sensitivity", 5);
             });
         }},
        {"TheMonitorMakesTheFile",
         std::nullopt,
         {madeByMonitor(false), madeByMonitor(true)},
         [](const fs::path& root) {
             return onMonitor(root, [](NoctaraThread& monitor) { monitor.reloadPreferences(); });
         }},
        {"AFileIsWrittenAndSynced",
         some,
         {with(some, "StartHour", 21)},
         [some](const fs::path& root) {
             return [file = root / fs::path(settingsFilePath).relative_path(),
                     changed = with(some, "StartHour", 21)] {
                 return writePropertyListFile(file, changed, Durability::synced) ? 0 : 1;
             };
         }},
        {"TheCommandChangesAKey",
         some,
         {with(some, "Sensitivity", 3)},
         [](const fs::path& root) {
             return [file = (root / fs::path(settingsFilePath).relative_path()).string()] {
                 return command({"noctara", "settings", file, "set", "Sensitivity", "3"});
             };
         },
         true},
        {"TheCommandMakesTheFile",
         std::nullopt,
         {inNumbers(defaultSettings()), with(inNumbers(defaultSettings()), "Sensitivity", 3)},
         [](const fs::path& root) {
             const fs::path file = root / fs::path(settingsFilePath).relative_path();
             fs::create_directories(file.parent_path());
             return [file = file.string()] {
                 return command(
                     {"noctara", "settings", file, "set", "Sensitivity", "3", "--create"});
             };
         },
         true},
    };
}

} // namespace noctara
