/// Scenarios given as text, and the reasons for which they are refused.
#pragma once

#include "input/bad_input.h"
#include "night/scenario_file.h"

#include <string>

namespace noctara {

inline constexpr double evening = 1393713000; // 2014-03-01T22:30:00Z
inline constexpr double hour = 3600;

inline Scenario parse(const std::string& text, const ScenarioOverrides& overrides = {}) {
    return parseScenario(text, "night.toml", overrides);
}

/// The message with which a scenario is refused; empty when it is not.
inline std::string refusal(const std::string& text, const ScenarioOverrides& overrides = {}) {
    try {
        parse(text, overrides);
    } catch (const BadInput& error) {
        return error.what();
    }
    return {};
}

} // namespace noctara
