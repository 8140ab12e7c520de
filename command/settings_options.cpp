#include "command/commands.h"
#include "command/settings_command.h"
#include "input/completion.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <functional>
#include <iostream>
#include <memory>
#include <string_view>
#include <system_error>

namespace noctara {

namespace {

struct SettingsOptions {
    std::filesystem::path file;
    std::string key;
    std::string value;
    std::string identifier;
    bool create = false;

    MissingFile missing() const { return create ? MissingFile::made : MissingFile::refused; }
};

/// Adds the subcommands. Their options are in `options`, which they share.
class SettingsCommands {
public:
    SettingsCommands(Action& chosen, std::shared_ptr<SettingsOptions> shared) :
        action(chosen), options(std::move(shared)) {}

    CLI::App& add(CLI::App& parent, const char* name, const char* description,
                  std::function<int(const SettingsOptions&)> work) const {
        auto& command = *parent.add_subcommand(name, description);
        command.callback([&action = action, options = options, work = std::move(work)] {
            action = [options, work] { return work(*options); };
        });
        return command;
    }

    void addCreate(CLI::App& command) const {
        command.add_flag("--create", options->create,
                         "make the file, with the defaults, if there is none");
    }

    void addPositional(CLI::App& command, const char* name, std::string& value,
                       const char* description) const {
        command.add_option(name, value, description)->type_name("")->required();
    }

private:
    Action& action;
    std::shared_ptr<SettingsOptions> options;
};

/// If the name of the file is left out, a subcommand stands in its place. An error if it does.
std::string refuseSubcommand(const std::string& file) {
    constexpr std::array<std::string_view, 5> names{"show", "get", "set", "check", "launch"};
    std::error_code ignored;
    if (std::find(names.begin(), names.end(), file) == names.end() ||
        std::filesystem::exists(file, ignored))
        return "";
    return "the name of the file comes first: noctara settings FILE " + file;
}

} // namespace

void addSettingsCommand(CLI::App& app, Action& action) {
    const auto options = std::make_shared<SettingsOptions>();
    const SettingsCommands commands(action, options);
    auto& command =
        *app.add_subcommand("settings", "Shows, checks and changes a settings file of a phone");
    completedByFiles(
        command
            .add_option("FILE", options->file,
                        "settings file, an XML or binary property list (see docs/settings.md)")
            ->type_name("")
            ->required()
            ->check(refuseSubcommand, ""),
        ".plist");
    command.require_subcommand(0, 1);
    command.callback([&action, options] {
        if (!action)
            action = [options] { return showSettings(options->file, std::cout); };
    });

    commands.add(command, "show",
                 "Prints each setting, its default and its meaning, and what is odd; the default",
                 [](const auto& o) { return showSettings(o.file, std::cout); });
    auto& get = commands.add(command, "get", "Prints the value of one setting",
                             [](const auto& o) { return getSetting(o.file, o.key, std::cout); });
    commands.addPositional(get, "KEY", options->key, "setting, such as Sensitivity");
    auto& set = commands.add(command, "set", "Changes one setting", [](const auto& o) {
        return setSetting(o.file, o.key, o.value, o.missing(), std::cout);
    });
    commands.addPositional(set, "KEY", options->key, "setting, such as Sensitivity");
    commands.addPositional(set, "VALUE", options->value, "on or off for a switch, or a number");
    commands.addCreate(set);
    commands.add(command, "check", "Prints what is odd; exit code 1 if anything is",
                 [](const auto& o) { return checkSettingsFile(o.file, std::cout); });

    auto& launch = *command.add_subcommand(
        "launch", "The applications to launch when the phone goes quiet: add, remove or list");
    launch.require_subcommand(1);
    auto& add = commands.add(launch, "add", "Launch this application", [](const auto& o) {
        return addApplication(o.file, o.identifier, o.missing(), std::cout);
    });
    commands.addPositional(add, "IDENTIFIER", options->identifier,
                           "identifier, such as com.apple.mobiletimer");
    commands.addCreate(add);
    auto& remove =
        commands.add(launch, "remove", "Do not launch this application", [](const auto& o) {
            return removeApplication(o.file, o.identifier, std::cout);
        });
    commands.addPositional(remove, "IDENTIFIER", options->identifier,
                           "identifier, such as com.apple.mobiletimer");
    commands.add(launch, "list", "Print the identifiers",
                 [](const auto& o) { return listApplications(o.file, std::cout); });
}

} // namespace noctara
