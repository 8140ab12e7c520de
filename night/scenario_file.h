/// Scenario files: a night for the simulated phone, written as TOML.
#pragma once

#include "phones/model/scenario.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace noctara {

/// Values that replace those of the file, as the user typed them.
struct ScenarioOverrides {
    std::optional<std::string> start;    ///< "2014-03-01T22:30:00", the option --start.
    std::optional<std::string> end;      ///< The same, or a time without a date: the option --end.
    std::optional<std::string> timezone; ///< An IANA name: the option --timezone.
};

/// Throws BadInput for a file that cannot be read, is larger than 1 MiB or is not a scenario, and
/// for overrides that are not valid with it.
Scenario readScenario(const std::filesystem::path& file, const ScenarioOverrides& overrides = {});

/// The same for a text. Error messages use `nameForErrors` as the name of the file.
Scenario parseScenario(std::string_view text, const std::string& nameForErrors,
                       const ScenarioOverrides& overrides = {});

} // namespace noctara
