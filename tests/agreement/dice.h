/// Chances that fall the same way on every machine: the standard library leaves it open how its
/// distributions use the generator, so the arithmetic is here.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <random>

namespace noctara {

/// One expression throws it once only: the order within an expression is the compiler's choice.
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
        return *std::next(std::begin(choices),
                          between(0, static_cast<std::int64_t>(std::size(choices)) - 1));
    }
    const char* oneOf(std::initializer_list<const char*> choices) {
        return oneOf<std::initializer_list<const char*>>(choices);
    }

private:
    std::mt19937_64 engine;
};

} // namespace noctara
