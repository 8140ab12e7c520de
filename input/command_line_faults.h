/// The faults of a command line, in the words of this project instead of those of CLI11.
#pragma once

#include <optional>
#include <string>

namespace CLI {
class App;
class ParseError;
} // namespace CLI

namespace noctara {

/// "what: why; what would do", without the name of the program. `error` is what the parser threw.
std::string faultInWords(CLI::App& program, const CLI::ParseError& error);

/// A fault that the parser accepts: an empty value, or a value for an option that takes none.
/// Absent if there is none.
std::optional<std::string> acceptedFault(CLI::App& program);

/// "noctara night", the program with the subcommand that the user chose.
std::string chosenCommand(const CLI::App& program);

} // namespace noctara
