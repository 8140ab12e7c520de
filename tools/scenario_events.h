/// The events of a scenario file.
#pragma once

#include "platform/simulated/local_time.h"
#include "platform/simulated/scenario.h"
#include "tools/toml_reader.h"

#include <vector>

namespace noctara {

/// Reads the [[event]] tables, of which none may be before the one before it, nor before `start`.
std::vector<Event> readEvents(const std::vector<TomlValue>& tables, const TimeZone& zone,
                              Date start);

} // namespace noctara
