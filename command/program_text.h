/// The texts of a program's command line, from which its man page and the completions of the shells
/// are made.
#pragma once

#include "input/completion.h"

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace noctara {

struct OptionText {
    std::vector<std::string> names; ///< "-h", "--help"; of an argument: "SCENARIO".
    std::string value;              ///< "FILE"; empty for a flag.
    std::string description;
    std::string standard;           ///< The default. Empty if none is told.
    std::vector<std::string> needs; ///< The names of options without which it has no effect.
    Completion completion;
    bool isFlag = false;
    bool isRequired = false;
    bool isRepeatable = false;
};

/// A program or one of its subcommands. Hidden options are left out.
struct CommandText {
    std::string name;
    std::string description;
    std::vector<OptionText> options;
    std::vector<OptionText> arguments; ///< Without a name that begins with a hyphen.
    std::vector<CommandText> subcommands;
};

CommandText textOf(CLI::App& app);

/// A man page: the template, in mdoc, whose lines @DATE@, @SYNOPSIS@ and @SUBCOMMANDS@ are
/// replaced. `date` is "November 22, 2026".
std::string manPage(const CommandText& program, const std::string& pageTemplate,
                    const std::string& date);

std::string bashCompletion(const CommandText& program);
std::string zshCompletion(const CommandText& program);
std::string fishCompletion(const CommandText& program);

} // namespace noctara
