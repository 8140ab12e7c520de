/// The events of a scenario file.
#pragma once

#include "night/toml_reader.h"
#include "phones/model/local_time.h"
#include "phones/model/scenario.h"

#include <vector>

namespace noctara {

/// Reads the [[event]] tables. Throws BadInput if one is before the previous one or before `start`.
std::vector<ScheduledEvent> readEvents(const std::vector<TomlValue>& tables, const TimeZone& zone,
                                       Date start);

} // namespace noctara
