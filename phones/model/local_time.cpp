/// Local time from the system's time zone database.
#include "phones/model/local_time.h"

#include <cmath>
#include <stdexcept>

namespace noctara {

namespace {

/// In seconds from 1970; the year of a later date does not fit into DateComponents.
constexpr double farthestDate = 3e16;

absl::TimeZone::TimeInfo infoAt(const absl::TimeZone& zone, const DateComponents& parts) {
    return zone.At(absl::CivilSecond(parts.year, parts.month, parts.day, parts.hour, parts.minute,
                                     parts.second));
}

Date dateOf(absl::Time instant) {
    return {static_cast<double>(absl::ToUnixSeconds(instant))};
}

} // namespace

TimeZone::TimeZone(const std::string& name) {
    // LoadTimeZone also accepts paths, fixed offsets and names for the zone of this machine.
    const bool isPlain = name.find_first_of(".:") == name.npos && !name.starts_with('/');
    if (!isPlain || !absl::LoadTimeZone(name, &zone) || zone.name() != name)
        throw std::runtime_error("no time zone " + name);
}

DateComponents TimeZone::components(Date date) const {
    const double seconds =
        std::floor(std::fmin(std::fmax(date.secondsSince1970, -farthestDate), farthestDate));
    const auto local = zone.At(absl::FromUnixSeconds(static_cast<std::int64_t>(seconds))).cs;
    return {static_cast<std::int32_t>(local.year()),
            local.month(),
            local.day(),
            local.hour(),
            local.minute(),
            local.second()};
}

Date TimeZone::date(const DateComponents& components) const {
    const auto info = infoAt(zone, components);
    return dateOf(info.kind == absl::TimeZone::TimeInfo::REPEATED ? info.post : info.pre);
}

Date TimeZone::firstDate(const DateComponents& components) const {
    return dateOf(infoAt(zone, components).pre);
}

bool TimeZone::exists(const DateComponents& components) const {
    return infoAt(zone, components).kind != absl::TimeZone::TimeInfo::SKIPPED;
}

} // namespace noctara
