/// What a shell offers for the value of an option. An option declares it where it is declared:
///
///     completedByFiles(command.add_option("--settings", ...)->type_name("FILE"), ".plist");
///
/// An option without a declaration is completed by its type name: FILE by all files, FOLDER by
/// folders, anything else by nothing.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class Option;
}

namespace noctara {

struct Completion {
    enum class Kind { nothing, files, folders, words, timeZones };

    Kind kind = Kind::nothing;
    std::vector<std::string> choices; ///< The words, or the endings of the files; none: any file.
};

// Each returns the option.

/// Files with this ending, for example ".toml".
CLI::Option* completedByFiles(CLI::Option* option, const std::string& ending);

/// A few words. They must not contain blanks.
CLI::Option* completedByWords(CLI::Option* option, const std::vector<std::string>& words);

CLI::Option* completedByTimeZones(CLI::Option* option);

Completion completionOf(CLI::Option& option);

} // namespace noctara
