#include "command/program.h"

#include <CLI/CLI.hpp>

namespace noctara {

void describeProgram(CLI::App& app, Action& action) {
    app.name("noctara");
    app.description("Noctara switches a phone's radios off while it lies still at night. This "
                    "command runs it on a simulated phone.");
    app.require_subcommand(1);
    app.footer("Exit codes: 0 fine, 1 the run found something wrong, 2 bad input.");
    app.set_version_flag("--version", "noctara " NOCTARA_VERSION, "Print the version and exit");
    addNightCommand(app, action);
    addReplayCommand(app, action);
    addWhyCommand(app, action);
    addDetectCommand(app, action);
    addCapabilitiesCommand(app, action);
    addHelpCommand(app, action);
}

} // namespace noctara
