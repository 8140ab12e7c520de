#include "output/terminal_text.h"

#include <cstdlib>
#include <iostream>
#include <string_view>
#include <sys/ioctl.h>
#include <unistd.h>

namespace noctara {

namespace {

/// The word of a stream that says whether it has a TerminalText.
const int styledWord = std::ios_base::xalloc();

constexpr char escape = '\x1b';

/// The number of bytes of the character, or of the escape sequence that ends with m, at the front.
std::size_t sizeOfNext(std::string_view text) {
    std::size_t size = 1;
    if (text[0] == escape) {
        while (size < text.size() && text[size - 1] != 'm')
            ++size;
    } else {
        // The other bytes of a character in UTF-8.
        while (size < text.size() && (static_cast<unsigned char>(text[size]) & 0xC0) == 0x80)
            ++size;
    }
    return size;
}

std::size_t columnsOf(std::string_view text) {
    std::size_t columns = 0;
    while (!text.empty()) {
        columns += text[0] != escape;
        text.remove_prefix(sizeOfNext(text));
    }
    return columns;
}

/// Where the text of the last column of a line begins: after its time, after the name of a figure
/// or of an option, or after the blanks at its beginning.
std::size_t hangingIndent(std::string_view line, std::size_t width) {
    const std::size_t first = line.find_first_not_of(' ');
    const std::size_t gap = line.find("  ", first);
    const std::size_t second = line.find_first_not_of(' ', gap);
    const auto fits = [&](std::size_t begin) {
        return begin != line.npos && columnsOf(line.substr(0, begin)) <= width / 2;
    };
    if (gap != line.npos && fits(second))
        return columnsOf(line.substr(0, second));
    return fits(first) ? first : 0;
}

bool isJson(std::string_view line) {
    const std::size_t first = line.find_first_not_of(' ');
    return first != line.npos && std::string_view("{}[]\"").find(line[first]) != line.npos;
}

std::string broken(std::string_view line, std::size_t width) {
    if (columnsOf(line) <= width || isJson(line))
        return std::string(line);
    const std::size_t indent = hangingIndent(line, width);
    std::string text;
    std::size_t room = width;
    while (columnsOf(line) > room) {
        // The last blank that the row has room for, after the first word.
        std::size_t position = 0, columns = 0, blank = line.npos;
        bool wordBegan = false;
        while (position < line.size() && columns <= room) {
            if (line[position] == ' ' && wordBegan && columns > (text.empty() ? indent : 0))
                blank = position;
            wordBegan = wordBegan || line[position] != ' ';
            columns += line[position] != escape;
            position += sizeOfNext(line.substr(position));
        }
        if (blank == line.npos)
            break; // A word that is longer than a row stays whole.
        text += std::string(line.substr(0, blank)) + '\n' + std::string(indent, ' ');
        line.remove_prefix(blank + 1);
        room = width - indent;
    }
    return text + std::string(line);
}

} // namespace

class TerminalText::Lines final : public std::streambuf {
public:
    Lines(std::streambuf* terminal, std::size_t rowWidth) : sink(terminal), width(rowWidth) {}

    bool finish() {
        const std::string rest = broken(line, width);
        line.clear();
        return put(rest);
    }

private:
    int_type overflow(int_type c) override {
        if (traits_type::eq_int_type(c, traits_type::eof()))
            return traits_type::not_eof(c);
        if (c != '\n') {
            line += traits_type::to_char_type(c);
            return c;
        }
        return finish() && put("\n") ? c : traits_type::eof();
    }

    int sync() override { return sink->pubsync(); }

    bool put(const std::string& text) {
        const auto size = static_cast<std::streamsize>(text.size());
        return sink->sputn(text.data(), size) == size;
    }

    std::streambuf* const sink;
    const std::size_t width;
    std::string line;
};

TerminalText::TerminalText(std::ostream& out, std::size_t width) :
    stream(out), sink(out.rdbuf()), lines(std::make_unique<Lines>(sink, width)) {
    stream.rdbuf(lines.get());
    stream.iword(styledWord) = 1;
}

TerminalText::~TerminalText() {
    lines->finish();
    stream.iword(styledWord) = 0;
    stream.rdbuf(sink);
    stream.flush();
}

std::unique_ptr<TerminalText> terminalText() {
    const char* const noColour = std::getenv("NO_COLOR");
    const char* const terminal = std::getenv("TERM");
    if (!isatty(STDOUT_FILENO) || (noColour && *noColour) || !terminal ||
        std::string_view(terminal) == "dumb")
        return nullptr;
    constexpr std::size_t usualWidth = 80;
    winsize size{};
    const bool isKnown = ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return std::make_unique<TerminalText>(std::cout, isKnown ? size.ws_col : usualWidth);
}

std::ostream& heading(std::ostream& out) {
    return out.iword(styledWord) ? out << "\x1b[1m" : out;
}

std::ostream& alarm(std::ostream& out) {
    return out.iword(styledWord) ? out << "\x1b[1;31m" : out;
}

std::ostream& plain(std::ostream& out) {
    return out.iword(styledWord) ? out << "\x1b[0m" : out;
}

} // namespace noctara
