/// Settings for random scenarios, the odd ones included that a settings file may hold.
#pragma once

#include "tests/agreement/dice.h"

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

/// A few new values, for the middle of a night. No scan interval is below 1: with one of 0, a
/// monitor outside of its window would go round without ever waiting.
std::vector<WrittenSetting> randomChanges(Dice& dice, int hour);

/// A few keys, for the most part those of settings.
std::vector<std::string> randomKeys(Dice& dice);

/// A scan interval of at least 1.
std::string usualScanInterval(Dice& dice);

/// A truth as a settings file may have it: mostly a boolean, else a number or text.
std::string truthText(Dice& dice, bool truth);

/// Of applications that may be installed.
extern const std::vector<std::string> applicationIdentifiers;

} // namespace noctara
