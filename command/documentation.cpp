/// Writes the man page and the completions of the shells from the declarations of the command line.
///
/// usage: noctara-documentation TEMPLATE DATE FOLDER
///
/// TEMPLATE is the man page without what is generated. The files in FOLDER are noctara.1,
/// noctara.bash, _noctara and noctara.fish.
#include "command/program.h"
#include "command/program_text.h"
#include "input/file_reading.h"

#include <CLI/CLI.hpp>

#include <filesystem>
#include <fstream>
#include <iostream>

int main(int count, char** arguments) {
    if (count != 4) {
        std::cerr << "usage: noctara-documentation TEMPLATE DATE FOLDER\n";
        return 2;
    }
    try {
        CLI::App app;
        noctara::Action action;
        noctara::describeProgram(app, action);
        const auto program = noctara::textOf(app);
        const std::string page =
            noctara::manPage(program, noctara::readFile(arguments[1], 1), arguments[2]);

        const std::filesystem::path folder = arguments[3];
        std::filesystem::create_directories(folder);
        const auto write = [&](const char* name, const std::string& text) {
            std::ofstream file(folder / name);
            if (!(file << text).flush())
                throw std::runtime_error((folder / name).string() + " cannot be written");
        };
        write("noctara.1", page);
        write("noctara.bash", noctara::bashCompletion(program));
        write("_noctara", noctara::zshCompletion(program));
        write("noctara.fish", noctara::fishCompletion(program));
    } catch (const std::exception& error) {
        std::cerr << "noctara-documentation: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
