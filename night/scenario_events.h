/// The events of a scenario file.
#pragma once

#include "night/toml_reader.h"
#include "phones/model/local_time.h"
#include "phones/model/scenario.h"

#include <vector>

namespace noctara {

/// Reads the [[event]] tables, of which none may be before the one before it, nor before `start`.
std::vector<Event> readEvents(const std::vector<TomlValue>& tables, const TimeZone& zone,
                              Date start);

} // namespace noctara
