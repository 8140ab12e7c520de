#include "command/program.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <string>

namespace noctara {

namespace {

/// Prints the value of an option and its default, but not which options exclude each other.
class HelpFormatter final : public CLI::Formatter {
public:
    std::string make_option_opts(const CLI::Option* option) const override {
        if (option->get_type_size() == 0)
            return "";
        const std::string value = option->get_type_name();
        const std::string standard = option->get_default_str();
        return (value.empty() ? "" : ' ' + value) + (standard.empty() ? "" : '=' + standard);
    }
};

} // namespace

void describeProgram(CLI::App& app, Action& action) {
    app.name("noctara");
    app.formatter(std::make_shared<HelpFormatter>());
    app.description("Noctara switches a phone's radios off while it lies still at night. This "
                    "command runs it on a simulated phone.");
    app.require_subcommand(1);
    app.footer("Exit codes: 0 fine, 1 the run found something wrong, 2 bad input.");
    app.set_version_flag("--version", "noctara " NOCTARA_VERSION, "Print the version and exit");
    addNightCommand(app, action);
    addReplayCommand(app, action);
    addWhyCommand(app, action);
    addDetectCommand(app, action);
    addSettingsCommand(app, action);
    addSoakCommand(app, action);
    addCapabilitiesCommand(app, action);
    addHelpCommand(app, action);
}

} // namespace noctara
