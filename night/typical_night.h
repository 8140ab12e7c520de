/// The night that is played if the user names no scenario.
#pragma once

#include <string_view>

namespace noctara {

/// The text of scenarios/typical-night.toml.
extern const std::string_view typicalNight;

} // namespace noctara
