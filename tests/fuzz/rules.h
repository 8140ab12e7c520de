/// The rules that hold for every input. A broken one ends the fuzzer, which then saves the input.
#pragma once

#include "input/bad_input.h"
#include "input/printable.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

/// The entry point that libFuzzer calls.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace noctara {

inline void require(bool holds, std::string_view rule, std::string_view detail = {}) {
    if (holds)
        return;
    std::fprintf(stderr, "broken rule: %.*s\n%.*s\n", static_cast<int>(rule.size()), rule.data(),
                 static_cast<int>(detail.size()), detail.data());
    std::abort();
}

inline void requireOneLine(const std::string& text) {
    require(!text.empty() && printable(text) == text, "a message is one line of plain text", text);
}

/// Each line of an output can go to a terminal as it is.
inline void requirePlainLines(std::string_view text) {
    while (!text.empty()) {
        const std::string line(text.substr(0, text.find('\n')));
        require(printable(line) == line, "a line of the output is plain text", line);
        text.remove_prefix(std::min(text.size(), line.size() + 1));
    }
}

/// The message with which `work` refuses its input. Absent if it accepts it. No other exception is
/// allowed.
inline std::optional<std::string> refusal(const std::function<void()>& work) {
    try {
        work();
        return std::nullopt;
    } catch (const BadInput& error) {
        requireOneLine(error.what());
        return error.what();
    }
}

} // namespace noctara
