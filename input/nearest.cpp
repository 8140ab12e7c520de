#include "input/nearest.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>
#include <vector>

namespace noctara {

namespace {

constexpr std::size_t longestWord = 40;
constexpr std::size_t mostChanges = 2;
constexpr std::size_t shortestBeginning = 3;

char lowerCase(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool equalCharacters(char one, char other) {
    return lowerCase(one) == lowerCase(other);
}

/// The number of characters to insert, delete or replace to turn one word into the other.
std::size_t editDistance(std::string_view from, std::string_view to) {
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < from.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < to.size(); ++j) {
            const std::size_t replaced = diagonal + (equalCharacters(from[i], to[j]) ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

bool beginsWith(std::string_view choice, std::string_view beginning) {
    return choice.size() >= beginning.size() &&
           std::equal(beginning.begin(), beginning.end(), choice.begin(), equalCharacters);
}

} // namespace

std::optional<std::string_view> nearest(std::string_view word,
                                        std::span<const std::string_view> choices) {
    if (word.size() > longestWord)
        return std::nullopt;
    std::optional<std::string_view> found;
    std::size_t least = mostChanges + 1;
    for (const auto choice : choices) {
        const std::size_t distance = editDistance(word, choice);
        if (distance < least && distance < choice.size()) {
            least = distance;
            found = choice;
        }
    }
    if (!found && word.size() >= shortestBeginning)
        for (const auto choice : choices)
            if (!found && beginsWith(choice, word))
                found = choice;
    return found;
}

} // namespace noctara
