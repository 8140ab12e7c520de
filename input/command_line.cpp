#include "input/command_line.h"

#include "input/bad_input.h"
#include "input/command_line_faults.h"
#include "input/printable.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <exception>
#include <iostream>

namespace noctara {

int runCommandLine(CLI::App& app, int count, char** arguments,
                   const std::function<int()>& command) {
    const auto fail = [&](int exitCode, const std::string& what) {
        std::cout.flush();
        // Every option begins with a hyphen, and is one of the subcommand's.
        const bool isAboutOption = what.starts_with('-') && !app.get_subcommands().empty();
        std::cerr << app.get_name() << ": "
                  << (isAboutOption ? app.get_subcommands()[0]->get_name() + ": " : "")
                  << printable(what) << '\n';
        return exitCode;
    };
    const auto refuse = [&](const std::string& fault) {
        return fail(badInput, fault + " (" + chosenCommand(app) + " --help lists the options)");
    };
    try {
        app.parse(count, arguments);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0)
            return app.exit(error);
        return refuse(faultInWords(app, error));
    }
    if (const auto fault = acceptedFault(app))
        return refuse(*fault);
    try {
        const int exitCode = command();
        if (std::cout.flush() && std::fflush(stdout) == 0)
            return exitCode;
        return fail(foundWrong, "the output could not be written whole");
    } catch (const BadInput& error) {
        return fail(badInput, error.what());
    } catch (const std::exception& error) {
        return fail(foundWrong, error.what());
    }
}

} // namespace noctara
