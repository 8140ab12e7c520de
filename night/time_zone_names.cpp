#include "night/time_zone_names.h"

#include "input/bad_input.h"
#include "input/nearest.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>

namespace noctara {

namespace {

/// "America/Argentina/Ushuaia": "Ushuaia".
std::string_view cityOf(std::string_view zone) {
    return zone.substr(zone.rfind('/') + 1);
}

std::optional<std::string> nearestZone(std::string_view name) {
    constexpr std::size_t shortestName = 4;
    if (name.size() < shortestName)
        return std::nullopt;
    const auto zones = timeZoneNames();
    const std::vector<std::string_view> names(zones.begin(), zones.end());
    if (const auto zone = nearest(name, names))
        return std::string(*zone);
    // Shorter words are near to too many cities.
    constexpr std::size_t shortestCity = 5;
    if (cityOf(name).size() < shortestCity)
        return std::nullopt;
    std::vector<std::string_view> cities;
    for (const auto zone : names)
        cities.push_back(cityOf(zone));
    if (const auto city = nearest(cityOf(name), cities))
        for (const auto zone : names)
            if (cityOf(zone) == *city)
                return std::string(zone);
    return std::nullopt;
}

} // namespace

std::vector<std::string> timeZoneNames() {
    const char* const folder = std::getenv("TZDIR");
    std::ifstream zones(std::filesystem::path(folder ? folder : "/usr/share/zoneinfo") /
                        "tzdata.zi");
    // "Z NAME ..." begins a zone, "L TARGET NAME" is another name of one.
    std::vector<std::string> names;
    for (std::string line; std::getline(zones, line);) {
        std::istringstream words(line);
        std::string kind, first, second;
        words >> kind >> first >> second;
        if (kind == "Z")
            names.push_back(first);
        else if (kind == "L")
            names.push_back(second);
    }
    return names;
}

std::string adviceOnTimeZone(std::string_view name) {
    if (const auto zone = nearestZone(name))
        return "did you mean " + inQuotes(*zone) + "?";
    return "write an IANA name such as \"Europe/Paris\"";
}

} // namespace noctara
