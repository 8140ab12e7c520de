/// A menu of the settings, with their values in the phone's settings file.
#pragma once

#include "live/live_night.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace noctara {

struct MenuItem {
    std::string key; ///< It may hold text of the scenario.
    bool isNumber;
    std::int32_t value; ///< Of a switch: 0 is off.
    bool isMissing;     ///< The file lacks the key; the value is the default.
    std::int32_t least;
    std::int32_t most;
    std::string meaning;
};

class SettingsMenu {
public:
    /// The night must outlive the menu.
    explicit SettingsMenu(LiveNight& liveNight) : night(liveNight) {}

    /// The keys in the order of the settings page, then those of the phone's applications.
    std::vector<MenuItem> items() const;

    std::size_t selected() const { return selection; }

    /// Selects an item further down, or up if `by` is negative, as far as there are items.
    void move(int by);

    /// Moves a number by `by`, as far as the settings page allows, or turns a switch to the other
    /// value. Acts on the night as the settings screen would.
    void change(int by);

private:
    LiveNight& night;
    std::size_t selection = 0;
};

} // namespace noctara
