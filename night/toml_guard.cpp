#include "night/toml_guard.h"

#include "input/bad_input.h"

#include <algorithm>
#include <cstddef>

namespace noctara {

namespace {

bool isAscii(char c) {
    return static_cast<unsigned char>(c) < 0x80;
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Whether the text ends with a date and a T, such as 2014-03-01T.
bool endsWithDateAndT(std::string_view text) {
    constexpr std::string_view form = "dddd-dd-ddT";
    if (text.size() < form.size())
        return false;
    return std::equal(form.begin(), form.end(), text.end() - form.size(), [](char shape, char c) {
        return shape == 'd' ? isDigit(c) : shape == 'T' ? c == 'T' || c == 't' : c == shape;
    });
}

/// Walks through the text and skips comments and strings. Stops at a string without an end, because
/// the library does too.
class TomlWalk {
public:
    TomlWalk(std::string_view toml, const std::string& fileName) : text(toml), file(fileName) {}

    void walk() {
        constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
        if (text.starts_with(byteOrderMark))
            text.remove_prefix(byteOrderMark.size());
        while (at < text.size()) {
            const char c = text[at];
            if (c == '#')
                at = std::min(text.find('\n', at), text.size());
            else if (c == '"' || c == '\'')
                skipString(c);
            else
                checkPlain(c);
        }
    }

private:
    [[noreturn]] void refuse(const std::string& what) const {
        const std::string_view before = text.substr(0, at);
        const std::size_t lineBegin = before.rfind('\n') + 1; // 0 if there is none.
        const auto line = std::count(before.begin(), before.end(), '\n') + 1;
        const auto isFirstByte = [](char c) { return (c & 0xC0) != 0x80; };
        const std::string_view begin = before.substr(lineBegin);
        const auto column = std::count_if(begin.begin(), begin.end(), isFirstByte) + 1;
        throw BadInput(file + ":" + std::to_string(line) + ":" + std::to_string(column) + ": " +
                       what);
    }

    void checkPlain(char c) {
        if (c == '\n')
            dots = 0;
        // The library recurses once for each part of a dotted key, without a limit of its own.
        if (c == '.' && ++dots > mostDots)
            refuse("too many dots in one line; at most " + std::to_string(mostDots) +
                   " are accepted");
        if (!isAscii(c))
            refuse("this is not TOML: a character that is not ASCII; put the key or the text in "
                   "quotes");
        if (endsWithDateAndT(text.substr(0, at)) && !isDigit(c))
            refuse("this is not TOML: no time after the T; write times as 22:30:00 and local "
                   "date-times as 2014-03-01T22:30:00");
        ++at;
    }

    void skipString(char quote) {
        const bool hasLines = text.substr(at).starts_with(std::string(3, quote));
        const std::string closing(hasLines ? 3 : 1, quote);
        at += closing.size();
        while (at < text.size() && !text.substr(at).starts_with(closing)) {
            if (quote == '"' && text[at] == '\\')
                skipEscape(hasLines);
            else if (!hasLines && text[at] == '\n')
                at = text.size();
            else
                ++at;
        }
        at = std::min(at + closing.size(), text.size());
        // The last of up to five quotes end the string.
        for (int more = 0; hasLines && more < 2 && text.substr(at).starts_with(quote); ++more)
            ++at;
    }

    void skipEscape(bool hasLines) {
        at = std::min(at + 2, text.size());
        if (!hasLines || !isBlank(text[at - 1]))
            return;
        while (at < text.size() && isBlank(text[at]))
            ++at;
        if (at < text.size() && !isAscii(text[at]))
            refuse("the text goes on with a character that is not ASCII after a backslash at the "
                   "end of a line; write it before the backslash");
    }

    static bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

    static constexpr int mostDots = 200;

    std::string_view text;
    const std::string& file;
    std::size_t at = 0;
    int dots = 0;
};

} // namespace

void checkToml(std::string_view text, const std::string& file) {
    TomlWalk(text, file).walk();
}

} // namespace noctara
