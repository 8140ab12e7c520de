/// Settings for random scenarios, with unusual values that a settings file may have.
#pragma once

#include "soak/dice.h"

#include <optional>
#include <string>
#include <vector>

namespace noctara {

struct WrittenSetting {
    std::string key;
    std::string value; ///< As TOML.
};

struct RandomSettings {
    std::optional<std::vector<WrittenSetting>> file; ///< Absent: there is no settings file.
    bool screenDown = true;                          ///< The posture that counts as put down.
    bool lacksKeys = false;         ///< Some count only from the first change that is announced on.
    bool scanIntervalIsOdd = false; ///< Below 1, which the start puts right but no later reload.
};

/// `hour` is the local hour at the start of the night, near which some of the windows open or
/// close.
RandomSettings randomSettings(Dice& dice, int hour);

/// A few new values, for a change during the night. The scan interval is at least 1: with 0, a
/// monitor outside its window never waits.
std::vector<WrittenSetting> randomChanges(Dice& dice, int hour);

/// A few keys, most of them keys of settings.
std::vector<std::string> randomKeys(Dice& dice);

/// A scan interval of at least 1.
std::string usualScanInterval(Dice& dice);

/// A boolean as a settings file may have it: mostly a boolean, sometimes a number or text.
std::string truthText(Dice& dice, bool truth);

/// The identifiers of applications that may be installed.
extern const std::vector<std::string> applicationIdentifiers;

} // namespace noctara
