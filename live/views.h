/// The screens of a live night. Every screen fits its size, and holds no control characters.
#pragma once

#include "live/controls.h"
#include "live/live_night.h"
#include "live/screen.h"
#include "live/settings_menu.h"

#include <string>
#include <vector>

namespace noctara {

/// On a smaller terminal every screen is one line that says so.
inline constexpr Size smallestSize{60, 20};

struct PlayState {
    double speed; ///< Times real time.
    bool paused;
    std::string notice; ///< Empty: none.
};

/// The lanes with their past, and the latest lines of the story.
Screen nightScreen(const NightPicture& picture, const PlayState& play, Size size);

Screen settingsScreen(const std::vector<MenuItem>& items, std::size_t selected, Size size);

Screen helpScreen(Size size);

/// The open page.
Screen screenOf(LiveNight& night, const Controls& controls, Size size);

} // namespace noctara
