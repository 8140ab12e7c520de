#include "report/local_times.h"

#include "report/json_numbers.h"

#include <nlohmann/json.hpp>

namespace noctara {

Json localTimesForPage(const TimeZone& zone, double base, double from, double to) {
    constexpr int decimals = 3;
    Json spans = Json::array();
    for (const auto& offset : zone.offsets({base + from}, {base + to}))
        spans.push_back(
            Json::array({rounded(offset.from.secondsSince1970 - base, decimals),
                         rounded(base + offset.seconds, decimals), offset.abbreviation}));
    return spans;
}

} // namespace noctara
