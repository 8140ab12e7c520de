/// Text in the cells of a terminal. Texts are UTF-8.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace noctara {

/// The text with a question mark for each control character and for each byte that is not UTF-8.
std::string showable(std::string_view text);

/// The text in ASCII, in as many cells, for a terminal that cannot show other characters.
std::string inAscii(std::string_view text);

/// The number of cells that a showable text takes: 2 for a wide character, 0 for a combining one.
int cellsOf(std::string_view text);

/// The text, cut to at most `cells` cells. An ellipsis ends a text that was cut.
std::string cutTo(std::string_view text, int cells);

/// The text in exactly `cells` cells: cut, or followed by spaces.
std::string fitted(std::string_view text, int cells);

/// The text in lines of at most `cells` cells, broken at spaces where that is possible. All lines
/// but the first are indented by `indent` cells, which must be fewer than `cells`.
std::vector<std::string> wrapped(std::string_view text, int cells, int indent);

} // namespace noctara
