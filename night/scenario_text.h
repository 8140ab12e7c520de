/// Writes scenarios as scenario files.
#pragma once

#include "phones/model/scenario.h"

#include <string>
#include <vector>

namespace noctara {

/// An event as in a scenario file.
struct WrittenEvent {
    Date at;
    std::string action; ///< "posture"
    std::string value;  ///< In TOML: "\"screen-down\"", with its quotation marks.
};

/// The events of the scenario. Throws std::logic_error as scenarioText does.
std::vector<WrittenEvent> writtenEvents(const Scenario& scenario);

/// The text of a file that `parseScenario` reads as the same scenario. Values that are the defaults
/// are left out, but for the start and the end. Each line of `comment` becomes a comment at the
/// top. Throws std::logic_error for settings with data, which TOML does not have.
///
/// All instants must be whole seconds. The second occurrence of a local time is written as a time
/// without a date, which denotes the first one if the previous event is before that.
std::string scenarioText(const Scenario& scenario, const std::string& comment = {});

/// The text of the scenario with these events in place of its own, which need not be valid.
std::string scenarioText(const Scenario& scenario, const std::vector<WrittenEvent>& events);

} // namespace noctara
