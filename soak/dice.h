/// Random numbers that are the same on every machine. The distributions of the standard library are
/// not used, because their results depend on the implementation.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <random>

namespace noctara {

/// Use it at most once in an expression, because the order of evaluation is unspecified.
class Dice {
public:
    explicit Dice(std::uint64_t seed) : engine(seed) {}

    /// From `least` to `most`, both included.
    std::int64_t between(std::int64_t least, std::int64_t most) {
        const auto choices = static_cast<std::uint64_t>(most - least) + 1;
        return least + static_cast<std::int64_t>(engine() % choices);
    }

    bool chance(int percent) { return between(1, 100) <= percent; }

    template <typename Choices>
    auto oneOf(const Choices& choices) {
        const auto last = static_cast<std::int64_t>(std::size(choices)) - 1;
        return *std::next(std::begin(choices), static_cast<std::ptrdiff_t>(between(0, last)));
    }
    const char* oneOf(std::initializer_list<const char*> choices) {
        return oneOf<std::initializer_list<const char*>>(choices);
    }

private:
    std::mt19937_64 engine;
};

} // namespace noctara
