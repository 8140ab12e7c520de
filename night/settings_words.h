/// The lines of the story about the settings.
#pragma once

#include "monitor/decisions.h"
#include "platform/property_list.h"

#include <optional>
#include <string>
#include <vector>

namespace noctara {

/// What the monitor does with these settings. `file` is the settings file, for the applications
/// that it launches; absent if it could not be read.
std::string settingsInWords(const Settings& settings, const std::optional<Dictionary>& file);

/// What is odd about the settings file, one line each. Missing keys are not told. `applications`
/// has the identifiers of the phone's applications; it is empty if they are not known.
std::vector<std::string> oddSettingsInWords(const Settings& settings,
                                            const std::optional<Dictionary>& file,
                                            const std::vector<std::string>& applications);

} // namespace noctara
