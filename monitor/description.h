/// The platform's text form of a value, as "%@" prints it in a log line.
#pragma once

#include "platform/property_list.h"

#include <string>

namespace noctara {

/// What "%@" prints for no object.
inline constexpr const char* nullDescription = "(null)";

/// "2014-03-01 22:30:00 +0000": in UTC, without the fraction of a second.
std::string description(Date date);

/// Braces around one line for each key, sorted by key, nested values indented.
std::string description(const Dictionary& dictionary);

} // namespace noctara
