#include "input/command_line.h"

#include "input/bad_input.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <exception>
#include <iostream>

namespace noctara {

int runCommandLine(CLI::App& app, int count, char** arguments,
                   const std::function<int()>& command) {
    const auto fail = [&](int exitCode, const std::string& what) {
        std::cout.flush();
        std::cerr << app.get_name() << ": " << withoutControls(what) << '\n';
        return exitCode;
    };
    try {
        app.parse(count, arguments);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0)
            return app.exit(error);
        return fail(badInput, std::string(error.what()) + " (--help lists the options)");
    }
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
