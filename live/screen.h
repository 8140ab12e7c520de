/// The lines that a terminal shows.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace noctara {

enum class Style : std::uint8_t { plain, faint, strong, title, selected, on, quiet, event };

struct Span {
    std::string text; ///< UTF-8, without control characters.
    Style style = Style::plain;
};

using Line = std::vector<Span>;
using Screen = std::vector<Line>; ///< From the top.

struct Size {
    int width;
    int height;
};

} // namespace noctara
