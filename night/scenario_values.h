/// Values that stand in several places of a scenario file.
#pragma once

#include "night/toml_reader.h"
#include "phones/model/local_time.h"
#include "platform/property_list.h"

namespace noctara {

extern const Choices dataRates;
extern const Choices callStates;

/// One of the words, or the acceleration as an array of three reals.
PropertyList readPosture(const TomlValue& value);

/// Keys and values for the settings file, in the order of the scenario file.
Dictionary readSettings(const TomlValue& value, const TimeZone& zone);

} // namespace noctara
