/// Finds the setting that would have made a night go well, by playing the night again.
#pragma once

#include "night/night_findings.h"
#include "platform/property_list.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace noctara {

/// Plays the night again with these settings, which stay as they are all night. Null if the night
/// came to no end.
using Retry = std::function<std::unique_ptr<NightFindings>(const Dictionary& settings)>;

enum class Wish {
    quiet, ///< The phone becomes quiet at least once.
    held,  ///< It does not come back while it lies.
    back   ///< It comes back, with the radios that it had.
};

struct Advice {
    /// The settings to change. More than one only if no single one is enough.
    Dictionary settings;

    /// The night with them.
    NightFigures figures;

    /// Whether it came back with all its radios.
    bool everythingBack = false;
};

struct AdviceSearch {
    std::optional<Advice> found;    ///< Absent if no setting that was tried grants the wish.
    std::vector<std::string> tried; ///< The keys of the settings that were tried, without repeats.
};

AdviceSearch findAdvice(Wish wish, const Scenario& scenario, const NightFindings& night,
                        const Retry& retry);

/// What kept the phone from the quiet state, the weightiest first.
std::vector<Obstacle> obstaclesByWeight(const Obstacles& obstacles);

} // namespace noctara
