#include "live/text_cells.h"

#include "platform/utf8.h"

#include <algorithm>
#include <array>
#include <clocale>
#include <cwchar>
#include <optional>
#include <utility>

namespace noctara {

namespace {

/// wcwidth depends on the locale of the thread.
class Utf8Locale {
public:
    Utf8Locale() : locale(newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr)) {}
    ~Utf8Locale() {
        if (locale)
            freelocale(locale);
    }
    Utf8Locale(const Utf8Locale&) = delete;
    Utf8Locale& operator=(const Utf8Locale&) = delete;

    int width(char32_t character) const {
        if (!locale)
            return 1;
        const locale_t before = uselocale(locale);
        const int width = wcwidth(static_cast<wchar_t>(character));
        uselocale(before);
        return width;
    }

private:
    locale_t locale;
};

/// The cells of a character. Absent if it must not reach a terminal.
std::optional<int> widthOf(char32_t character) {
    if (character < 0x20 || (character >= 0x7F && character < 0xA0))
        return std::nullopt;
    if (character < 0x7F)
        return 1;
    static const Utf8Locale locale;
    const int width = locale.width(character);
    return width < 0 ? std::nullopt : std::optional(width);
}

struct Character {
    std::string_view bytes;
    std::optional<char32_t> code; ///< Absent for a byte that is not UTF-8.
};

Character take(std::string_view& text) {
    const std::string_view before = text;
    const auto code = takeUtf8(text);
    if (!code)
        text.remove_prefix(1);
    return {before.substr(0, before.size() - text.size()), code};
}

int cellsOf(const Character& character) {
    return character.code ? widthOf(*character.code).value_or(1) : 1;
}

/// What replaces the characters of the screens and stories in ASCII.
constexpr std::array<std::pair<char32_t, char>, 13> replacements{{
    {U'°', 'o'},
    {U'…', '.'},
    {U'×', 'x'},
    {U'·', '.'},
    {U'─', '-'},
    {U'━', '='},
    {U'█', '#'},
    {U'▁', '_'},
    {U'▔', '^'},
    {U'♪', 's'},
    {U'↑', '!'},
    {U'←', '<'},
    {U'→', '>'},
}};

/// The longest beginning of the text that takes at most `cells` cells.
std::string_view beginning(std::string_view text, int cells) {
    std::size_t size = 0;
    for (std::string_view rest = text; !rest.empty();) {
        const Character next = take(rest);
        cells -= cellsOf(next);
        if (cells < 0)
            break;
        size += next.bytes.size();
    }
    return text.substr(0, size);
}

} // namespace

std::string showable(std::string_view text) {
    std::string shown;
    while (!text.empty()) {
        const Character next = take(text);
        shown += next.code && widthOf(*next.code) ? next.bytes : "?";
    }
    return shown;
}

std::string inAscii(std::string_view text) {
    std::string shown;
    while (!text.empty()) {
        const Character next = take(text);
        const auto* const replacement =
            std::find_if(replacements.begin(), replacements.end(),
                         [&](const auto& pair) { return pair.first == next.code; });
        if (replacement != replacements.end())
            shown += replacement->second;
        else if (next.code && *next.code < 0x7F)
            shown += next.bytes;
        else
            shown.append(static_cast<std::size_t>(cellsOf(next)), '?');
    }
    return shown;
}

int cellsOf(std::string_view text) {
    int cells = 0;
    while (!text.empty())
        cells += cellsOf(take(text));
    return cells;
}

std::string cutTo(std::string_view text, int cells) {
    if (cellsOf(text) <= cells)
        return std::string(text);
    return cells <= 0 ? "" : std::string(beginning(text, cells - 1)) + "…";
}

std::string fitted(std::string_view text, int cells) {
    std::string shown = cutTo(text, cells);
    shown.append(static_cast<std::size_t>(std::max(0, cells - cellsOf(shown))), ' ');
    return shown;
}

std::vector<std::string> wrapped(std::string_view text, int cells, int indent) {
    std::vector<std::string> lines;
    std::string margin;
    while (cellsOf(text) > cells - cellsOf(margin)) {
        std::string_view line = beginning(text, cells - cellsOf(margin));
        // A line of the story begins with its time or with spaces; it is not broken there.
        const auto space = text.substr(0, line.size() + 1).rfind(' ');
        const auto least = lines.empty() ? static_cast<std::size_t>(indent) : 0;
        if (space != text.npos && space > least)
            line = text.substr(0, space);
        else if (line.empty())
            line = text.substr(0, 1);
        lines.push_back(margin + std::string(line));
        text.remove_prefix(line.size());
        text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
        margin.assign(static_cast<std::size_t>(indent), ' ');
    }
    if (!text.empty() || lines.empty())
        lines.push_back(margin + std::string(text));
    return lines;
}

} // namespace noctara
