#include "command/commands.h"
#include "input/bad_input.h"
#include "input/completion.h"
#include "input/nearest.h"

#include <CLI/CLI.hpp>

#include <iostream>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace noctara {

namespace {

int printHelp(const CLI::App& app, const std::string& topic) {
    if (topic.empty()) {
        // help() of a program prints the help of the subcommand that was parsed, which is this one.
        std::cout << app.get_formatter()->make_help(&app, app.get_name(),
                                                    CLI::AppFormatMode::Normal);
        return 0;
    }
    std::vector<std::string_view> names;
    for (const CLI::App* subcommand : app.get_subcommands(nullptr)) {
        if (subcommand->get_name() == topic) {
            std::cout << subcommand->help(app.get_name());
            return 0;
        }
        names.push_back(subcommand->get_name());
    }
    const auto meant = nearest(topic, names);
    throw BadInput(inQuotes(topic) + " is no subcommand; " +
                   (meant ? "did you mean " + std::string(*meant) + "?"
                          : app.get_name() + " --help lists them"));
}

} // namespace

void addHelpCommand(CLI::App& app, Action& action) {
    const auto topic = std::make_shared<std::string>();
    std::vector<std::string> names;
    for (const CLI::App* subcommand : app.get_subcommands(nullptr))
        names.push_back(subcommand->get_name());
    auto& command = *app.add_subcommand("help", "Prints the help of a subcommand");
    completedByWords(
        command.add_option("COMMAND", *topic, "subcommand; without one, all are listed")
            ->type_name(""),
        names);
    command.callback(
        [&app, &action, topic] { action = [&app, topic] { return printHelp(app, *topic); }; });
}

} // namespace noctara
