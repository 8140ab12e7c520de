/// The nights that the benchmarks play.
#pragma once

#include "phones/model/scenario.h"

#include <optional>
#include <utility>

namespace noctara {

/// 9.5 hours on a phone with these settings, or with none, so that the monitor writes the defaults
/// itself. The phone is laid down after an hour and taken up in the morning.
inline Scenario nightOf(std::optional<Dictionary> settings) {
    Scenario scenario;
    scenario.timezone = "Europe/Paris";
    scenario.settings = std::move(settings);
    const double start = scenario.start.secondsSince1970;
    scenario.events = {{{start + 3600}, PostureChange{NamedPosture::ScreenDown}},
                       {{start + 30000}, PostureChange{NamedPosture::InHand}}};
    return scenario;
}

inline Scenario defaultNight() {
    return nightOf(std::nullopt);
}

/// Default nights on consecutive days. The phone is in the hand during the days.
inline Scenario nightsInARow(int count) {
    constexpr double day = 24 * 3600;
    Scenario scenario = defaultNight();
    const auto oneNight = scenario.events;
    for (int i = 1; i < count; ++i)
        for (auto event : oneNight) {
            event.at.secondsSince1970 += i * day;
            scenario.events.push_back(std::move(event));
        }
    scenario.end.secondsSince1970 += (count - 1) * day;
    return scenario;
}

} // namespace noctara
