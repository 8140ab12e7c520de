/// Numbers of the report, rounded so that they take few characters.
#pragma once

#include <cmath>
#include <nlohmann/json.hpp>

namespace noctara {

/// The value with that many decimals, without a fraction if it is whole. Null if it is not finite.
inline nlohmann::ordered_json rounded(double value, int decimals) {
    const double scale = std::pow(10.0, decimals);
    const double result = std::round(value * scale) / scale;
    if (!std::isfinite(result))
        return nullptr;
    if (result == std::floor(result) && std::abs(result) < 1e15)
        return static_cast<std::int64_t>(result);
    return result;
}

} // namespace noctara
