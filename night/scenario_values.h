/// Values that occur in several places of a scenario file.
#pragma once

#include "night/toml_reader.h"
#include "phones/model/event.h"
#include "phones/model/local_time.h"
#include "platform/property_list.h"

namespace noctara {

/// A posture by its word, or as an array of the three numbers x, y and z, in g.
Posture readPosture(const TomlValue& value);

/// Keys and values for the settings file, in the order of the scenario file.
Dictionary readSettings(const TomlValue& value, const TimeZone& zone);

} // namespace noctara
