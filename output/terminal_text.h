/// Colour and line breaks on a terminal. Output to a file or a pipe stays as it is.
#pragma once

#include <cstddef>
#include <memory>
#include <ostream>
#include <streambuf>
#include <string>

namespace noctara {

/// While it lives, the stream breaks lines that are longer than `width` characters, with a hanging
/// indent, and the manipulators below have an effect. The stream must outlive it.
class TerminalText {
public:
    TerminalText(std::ostream& out, std::size_t width);

    /// Writes what is left of an unfinished line.
    ~TerminalText();

    TerminalText(const TerminalText&) = delete;
    TerminalText& operator=(const TerminalText&) = delete;

private:
    class Lines;

    std::ostream& stream;
    std::streambuf* const sink;
    const std::unique_ptr<Lines> lines;
};

/// For standard output. Null if that is no terminal, if the terminal cannot show colours
/// (TERM=dumb) or if the user wants none (NO_COLOR).
std::unique_ptr<TerminalText> terminalText();

// Manipulators. They write nothing to a stream without a TerminalText.
std::ostream& heading(std::ostream& out); ///< Bold.
std::ostream& alarm(std::ostream& out);   ///< Bold and red.
std::ostream& plain(std::ostream& out);   ///< Ends the others.

} // namespace noctara
