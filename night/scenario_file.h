/// Scenario files: a night for the simulated phone, written as TOML.
#pragma once

#include "phones/model/scenario.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace noctara {

/// What stands in place of the file's own values, as the user typed it.
struct ScenarioOverrides {
    std::optional<std::string> start;    ///< "2014-03-01T22:30:00", the option --start.
    std::optional<std::string> end;      ///< The same, or a time alone: the option --end.
    std::optional<std::string> timezone; ///< An IANA name: the option --timezone.
};

/// Throws BadInput for a file that cannot be read, is larger than 1 MiB or is no scenario, and for
/// overrides that do not fit it.
Scenario readScenario(const std::filesystem::path& file, const ScenarioOverrides& overrides = {});

/// The same of a text; `nameForErrors` stands in messages where the file's name would.
Scenario parseScenario(std::string_view text, const std::string& nameForErrors,
                       const ScenarioOverrides& overrides = {});

} // namespace noctara
