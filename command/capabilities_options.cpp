#include "command/capabilities_command.h"
#include "command/commands.h"
#include "input/completion.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace noctara {

void addCapabilitiesCommand(CLI::App& app, Action& action) {
    const auto scenario = std::make_shared<std::optional<std::filesystem::path>>();
    auto& command = *app.add_subcommand("capabilities",
                                        "Lists the capabilities that the scenario's phone reports");
    completedByFiles(command
                         .add_option("SCENARIO", *scenario,
                                     "scenario file; without one, the phone of the typical night")
                         ->type_name(""),
                     ".toml");
    command.callback(
        [&action, scenario] { action = [scenario] { return reportCapabilities(*scenario); }; });
}

} // namespace noctara
