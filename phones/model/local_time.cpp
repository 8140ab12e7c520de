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

/// The clamped date, rounded down to a second.
absl::Time instantOf(Date date) {
    const double seconds =
        std::floor(std::fmin(std::fmax(date.secondsSince1970, -farthestDate), farthestDate));
    return absl::FromUnixSeconds(static_cast<std::int64_t>(seconds));
}

/// The instant of a change of the offset. One of its two local times is skipped or occurs twice.
absl::Time instantOf(const absl::TimeZone& zone, const absl::TimeZone::CivilTransition& change) {
    const auto before = zone.At(change.from);
    return before.kind == absl::TimeZone::TimeInfo::UNIQUE ? zone.At(change.to).trans
                                                           : before.trans;
}

} // namespace

TimeZone::TimeZone(const std::string& name) {
    // LoadTimeZone also accepts paths, fixed offsets and names for the zone of this machine.
    const bool isPlain = name.find_first_of(".:") == name.npos && !name.starts_with('/');
    if (!isPlain || !absl::LoadTimeZone(name, &zone) || zone.name() != name)
        throw std::runtime_error("no time zone " + name);
}

DateComponents TimeZone::components(Date date) const {
    const auto local = zone.At(instantOf(date)).cs;
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

std::vector<LocalOffset> TimeZone::offsets(Date first, Date last) const {
    std::vector<LocalOffset> found;
    const auto add = [&](absl::Time instant, Date from) {
        const auto info = zone.At(instant);
        found.push_back({from, info.offset, info.zone_abbr});
    };
    add(instantOf(first), first);
    absl::TimeZone::CivilTransition change;
    for (absl::Time at = instantOf(first); zone.NextTransition(at, &change);) {
        at = instantOf(zone, change);
        if (dateOf(at) > last)
            break;
        add(at, dateOf(at));
    }
    return found;
}

bool TimeZone::exists(const DateComponents& components) const {
    return infoAt(zone, components).kind != absl::TimeZone::TimeInfo::SKIPPED;
}

} // namespace noctara
