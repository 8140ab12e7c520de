/// The units in which loggers write times and accelerations.
#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace noctara {

enum class AccelerationUnit { g, milliG, metresPerSecondSquared };

struct UnitOfAcceleration {
    AccelerationUnit unit;
    std::string_view symbol;
    double perG;
};

struct UnitOfTime {
    std::string_view symbol;
    std::string_view name;
    double seconds;
};

inline constexpr std::array<UnitOfAcceleration, 3> unitsOfAcceleration{{
    {AccelerationUnit::g, "g", 1.0},
    {AccelerationUnit::metresPerSecondSquared, "m/s²", 9.80665},
    {AccelerationUnit::milliG, "mg", 1000.0},
}};

/// From the longest to the shortest.
inline constexpr std::array<UnitOfTime, 4> unitsOfTime{{
    {"s", "seconds", 1.0},
    {"ms", "milliseconds", 1e-3},
    {"us", "microseconds", 1e-6},
    {"ns", "nanoseconds", 1e-9},
}};

/// The unit with this symbol, in any case: g, mg, m/s², m/s^2, m/s2 and the like.
std::optional<UnitOfAcceleration> findUnitOfAcceleration(std::string_view symbol);

/// The unit with this symbol, in any case: s, ms, us or µs, ns.
std::optional<UnitOfTime> findUnitOfTime(std::string_view symbol);

} // namespace noctara
