/// The words for the values of an enumeration in scenario files and traces.
#pragma once

#include "platform/cellular.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace noctara {

template <typename Value>
struct Word {
    Value value;
    std::string_view word;
};

// Clang 14 does not deduce the arguments of an aggregate.
template <typename Value>
Word(Value, const char*) -> Word<Value>;

/// The word for a value. Empty if there is none.
template <typename Words, typename Value>
constexpr std::string_view wordOf(const Words& words, Value value) {
    const auto found =
        std::find_if(words.begin(), words.end(), [&](const auto& w) { return w.value == value; });
    return found == words.end() ? std::string_view() : found->word;
}

/// The value for a word. Absent if there is none.
template <typename Words>
constexpr auto valueOf(const Words& words, std::string_view word)
    -> std::optional<decltype(words.begin()->value)> {
    const auto found =
        std::find_if(words.begin(), words.end(), [&](const auto& w) { return w.word == word; });
    if (found == words.end())
        return std::nullopt;
    return found->value;
}

inline constexpr std::array dataRateWords{
    Word{DataRate::kCTRegistrationDataRate2G, "2G"},
    Word{DataRate::kCTRegistrationDataRate3G, "3G"},
    Word{DataRate::kCTRegistrationDataRate4G, "4G"},
};

} // namespace noctara
