#include "recording/units.h"

#include <algorithm>
#include <cctype>
#include <string>

namespace noctara {

namespace {

/// In lower case, and without the characters that only some writers use: "m/s^2" becomes "m/s2".
std::string simplified(std::string_view symbol) {
    std::string text;
    for (const char c : symbol)
        if (c != '^' && c != ' ')
            text += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    const auto replace = [&text](std::string_view written, std::string_view plain) {
        if (const auto at = text.find(written); at != text.npos)
            text.replace(at, written.size(), plain);
    };
    replace("²", "2");
    replace("m/s/s", "m/s2");
    replace("\u00B5", "u"); // the micro sign
    replace("\u03BC", "u"); // the Greek letter
    return text;
}

template <typename Units>
auto findUnit(const Units& units, std::string_view symbol) {
    const std::string wanted = simplified(symbol);
    const auto unit = std::find_if(units.begin(), units.end(), [&](const auto& known) {
        return simplified(known.symbol) == wanted;
    });
    return unit == units.end() ? std::nullopt : std::optional(*unit);
}

} // namespace

std::optional<UnitOfAcceleration> findUnitOfAcceleration(std::string_view symbol) {
    return findUnit(unitsOfAcceleration, symbol);
}

std::optional<UnitOfTime> findUnitOfTime(std::string_view symbol) {
    return findUnit(unitsOfTime, symbol);
}

} // namespace noctara
