/// The night that is played when none is named.
#pragma once

#include <string_view>

namespace noctara {

/// The text of scenarios/typical-night.toml.
extern const std::string_view typicalNight;

} // namespace noctara
