/// Finds the word that a user meant.
#pragma once

#include <optional>
#include <span>
#include <string_view>

namespace noctara {

/// The choice that a misspelt `word` probably stands for: the nearest of those that at most two
/// changes of a character turn it into, otherwise one that begins with it. Upper and lower case are
/// the same. Absent if no choice is near. The result refers to the text of the choice.
std::optional<std::string_view> nearest(std::string_view word,
                                        std::span<const std::string_view> choices);

} // namespace noctara
