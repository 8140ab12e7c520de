/// The summary of a night: the verdict, then the figures.
#pragma once

#include "night/night_figures.h"
#include "night/verdict.h"
#include "phones/model/local_time.h"

#include <nlohmann/json_fwd.hpp>

#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace noctara {

struct NightSummary {
    Verdict verdict;
    NightFigures figures;

    /// What went wrong while the night was played. One clause each.
    std::vector<std::string> faults;
};

/// The figures as they are printed: names and values. Local times are in this time zone.
std::vector<std::pair<std::string, std::string>> figuresInWords(const NightFigures& figures,
                                                                const TimeZone& zone);

/// Local times are in the time zone of this IANA name.
void printSummary(const NightSummary& summary, const std::string& timezone, std::ostream& out);

/// Durations are in seconds, instants in seconds since 1970. A missing instant is null.
nlohmann::ordered_json toJson(const NightSummary& summary);

} // namespace noctara
