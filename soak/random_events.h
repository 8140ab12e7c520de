/// The events of a random scenario: the phone is put down and picked up, and other events in
/// between.
#pragma once

#include "phones/model/local_time.h"
#include "soak/random_settings.h"

#include <string>

namespace noctara {

struct RandomNight {
    TimeZone zone;
    Date start;
    Date end;
    RandomSettings settings;
    bool fallsAsleep; ///< The phone has an idle sleep, which a posture alone does not end.
};

/// Up to about 40 [[event]] tables. All times are whole seconds, as the monitor's are, so that many
/// events happen at the instants at which the monitor does something.
std::string randomEvents(Dice& dice, const RandomNight& night);

/// A posture as TOML: one that counts as put down, or another.
std::string randomPosture(Dice& dice, bool putDown, bool screenDown);

/// An instant in the form of scenario files: a date-time, or sometimes a time without a date if it
/// is within some hours after `from`. A local time that occurs twice may be read as the earlier
/// instant.
std::string randomTimeText(Dice& dice, const TimeZone& zone, Date instant, Date from);

/// A key of a settings file as TOML.
std::string keyText(const std::string& key);

} // namespace noctara
