/// Finds what is odd about a settings file.
#pragma once

#include "platform/property_list.h"

#include <string>
#include <vector>

namespace noctara {

struct Oddity {
    enum class Kind {
        unknownKey,
        wrongType,   ///< For example a text where a switch is expected.
        outOfRange,  ///< A number that the settings page could not write.
        emptyWindow, ///< The phone never goes quiet, because the time limit allows no hour.
        missingKey,
        absentApplication, ///< It is to be launched, and the phone does not have it.
    };
    Kind kind;
    std::string text; ///< One sentence for the user, without control characters.

    friend bool operator==(const Oddity&, const Oddity&) = default;
};

/// Says of each oddity what Noctara makes of it. A missing key is judged as at the start of the
/// home screen. `knownApplications` has the identifiers of the phone's applications; null if they
/// are not known.
std::vector<Oddity> checkSettings(const Dictionary& settings,
                                  const std::vector<std::string>* knownApplications);

} // namespace noctara
