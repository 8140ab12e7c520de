/// Writes scenarios as scenario files.
#pragma once

#include "phones/model/scenario.h"

#include <string>

namespace noctara {

/// The text of a file that `parseScenario` reads as the same scenario. Values that are the defaults
/// are left out, but for the start and the end. Each line of `comment` becomes a comment at the
/// top. Throws std::logic_error for settings with data, which TOML does not have.
///
/// All instants must be whole seconds. The second occurrence of a local time is written as a time
/// without a date, which denotes the first one if the previous event is before that.
std::string scenarioText(const Scenario& scenario, const std::string& comment = {});

} // namespace noctara
