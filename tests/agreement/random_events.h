/// What happens in a random scenario: the phone is laid down and picked up, and much else
/// meanwhile.
#pragma once

#include "phones/model/local_time.h"
#include "tests/agreement/random_settings.h"

#include <string>

namespace noctara {

struct RandomNight {
    TimeZone zone;
    Date start;
    Date end;
    RandomSettings settings;
    bool fallsAsleep; ///< The phone has an idle sleep, which a posture alone does not end.
};

/// The [[event]] tables, none to about 40. All is on whole seconds, as the monitor's own instants
/// are, so that many events fall on one of those.
std::string randomEvents(Dice& dice, const RandomNight& night);

/// A posture as TOML: one that counts as put down, or another.
std::string randomPosture(Dice& dice, bool putDown, bool screenDown);

/// An instant as scenario files want it: a date-time, or for one within some hours after `from`
/// perhaps a time alone. Of a local time that comes twice, a reader may take the earlier instant.
std::string randomTimeText(Dice& dice, const TimeZone& zone, Date instant, Date from);

/// A key of a settings file as TOML.
std::string keyText(const std::string& key);

} // namespace noctara
