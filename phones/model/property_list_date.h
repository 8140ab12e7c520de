/// The dates of XML property lists.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace noctara {

/// From 0001-01-01T00:00:00Z to 9999-12-31T23:59:59Z, in seconds since 1970.
inline constexpr std::int64_t earliestPropertyListDate = -62135596800;
inline constexpr std::int64_t latestPropertyListDate = 253402300799;

/// Seconds since 1970 of a text such as `2012-03-04T05:06:07Z`. Leading zeros may be missing.
/// Absent if the text is not a date in the range above.
std::optional<std::int64_t> secondsOfDateText(std::string_view text);

/// The text for `seconds`, which must be in the range above.
std::string dateText(std::int64_t seconds);

} // namespace noctara
