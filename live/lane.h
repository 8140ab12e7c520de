/// The lanes of a live night: for each thing that is watched, its value now and its past.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace noctara {

enum class LaneName : std::uint8_t {
    posture,
    countdown,
    state,
    airplane,
    wifi,
    bluetooth,
    cellularData,
    dataRate,
    location,
    call,
    charger,
    idleSleep,
    wakeUp,
    cues,
    applications,
};

inline constexpr std::size_t laneCount = 15;

/// What a lane shows at a moment.
enum class Mark : std::uint8_t {
    nothing,
    off,
    on,
    screenDown,
    screenUp,
    otherPosture,
    noSample,
    firstReading,
    secondReading,
    thirdReading,
    quiet,
    notWatching,
    rate2G,
    rate3G,
    rate4G,
    wakeUp,
    vibration,
    sound,
    quitApplication,
    launchedApplication,
};

struct Moment {
    double at; ///< Seconds on the monotonic clock.
    Mark mark;
};

struct Lane {
    std::string value; ///< Now, in words. It may hold text of the scenario.
    Mark mark = Mark::nothing;
    std::vector<Moment> past; ///< In order of time.
};

using Lanes = std::array<Lane, laneCount>;

/// Whether a mark lasts until the next one. Others belong to their moment only.
constexpr bool lasts(LaneName lane) {
    return lane != LaneName::countdown && lane != LaneName::wakeUp && lane != LaneName::cues &&
           lane != LaneName::applications;
}

} // namespace noctara
