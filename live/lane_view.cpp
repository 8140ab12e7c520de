#include "live/lane_view.h"

#include "live/text_cells.h"

#include <array>
#include <cmath>
#include <fmt/format.h>

namespace noctara {

namespace {

constexpr double minute = 60;
constexpr double hour = 3600;
constexpr double day = 24 * hour;

/// The steps between two labels.
constexpr std::array steps{minute,      2 * minute, 5 * minute, 10 * minute, 15 * minute,
                           30 * minute, hour,       2 * hour,   3 * hour,    4 * hour,
                           6 * hour,    12 * hour,  day,        2 * day};

constexpr int labelCells = 7;

/// A call or an idle sleep that is shorter than a cell is drawn nevertheless.
bool onWins(LaneName name) {
    return name == LaneName::call || name == LaneName::idleSleep;
}

/// Whether `other` is drawn in a cell that also has `mark`, which came before it.
bool isDrawnOver(LaneName name, Mark other, Mark mark) {
    if (!lasts(name))
        return other >= mark;
    return !(onWins(name) && mark == Mark::on);
}

void append(Line& line, const Glyph& glyph) {
    if (line.empty() || line.back().style != glyph.style)
        line.push_back({"", glyph.style});
    line.back().text += glyph.text;
}

} // namespace

Glyph glyphOf(Mark mark) {
    switch (mark) {
    case Mark::nothing:
        return {" ", Style::plain};
    case Mark::off:
        return {"·", Style::faint};
    case Mark::on:
        return {"━", Style::on};
    case Mark::screenDown:
        return {"▁", Style::quiet};
    case Mark::screenUp:
        return {"▔", Style::plain};
    case Mark::otherPosture:
        return {"~", Style::plain};
    case Mark::noSample:
        return {"?", Style::faint};
    case Mark::firstReading:
        return {"1", Style::event};
    case Mark::secondReading:
        return {"2", Style::event};
    case Mark::thirdReading:
        return {"3", Style::event};
    case Mark::quiet:
        return {"█", Style::quiet};
    case Mark::notWatching:
        return {"-", Style::faint};
    case Mark::rate2G:
        return {"2", Style::plain};
    case Mark::rate3G:
        return {"3", Style::on};
    case Mark::rate4G:
        return {"4", Style::on};
    case Mark::wakeUp:
        return {"↑", Style::event};
    case Mark::vibration:
        return {"v", Style::event};
    case Mark::sound:
        return {"♪", Style::event};
    case Mark::quitApplication:
        return {"-", Style::event};
    case Mark::launchedApplication:
        return {"+", Style::event};
    }
    return {" ", Style::plain};
}

Line laneStrip(LaneName name, const Lane& lane, const TimeAxis& axis) {
    Line strip;
    Mark lasting = Mark::nothing;
    auto next = lane.past.begin();
    for (int cell = 0; cell < axis.cells && (cell == 0 || axis.at(cell) <= axis.now); ++cell) {
        Mark drawn = lasting;
        for (; next != lane.past.end() && (next->at < axis.at(cell + 1) || cell + 1 == axis.cells);
             ++next) {
            if ((lasts(name) && next->at <= axis.at(cell)) || isDrawnOver(name, next->mark, drawn))
                drawn = next->mark;
            lasting = lasts(name) ? next->mark : Mark::nothing;
        }
        append(strip, glyphOf(drawn));
    }
    return strip;
}

std::string timeLabels(const TimeZone& zone, const TimeAxis& axis) {
    const double cellsPerSecond = axis.cells / (axis.end - axis.start);
    double step = steps.back();
    for (auto candidate = steps.rbegin(); candidate != steps.rend(); ++candidate)
        if (*candidate * cellsPerSecond >= labelCells)
            step = *candidate;
    const auto local = zone.components({axis.start});
    const double sinceMidnight = local.hour * hour + local.minute * minute + local.second;
    std::string labels;
    for (double at = axis.start - sinceMidnight + std::ceil(sinceMidnight / step) * step;
         at < axis.end; at += step) {
        const auto parts = zone.components({at});
        const std::string label = step >= day
                                      ? fmt::format("{}.{}.", parts.day, parts.month)
                                      : fmt::format("{:02}:{:02}", parts.hour, parts.minute);
        const auto cell = static_cast<int>((at - axis.start) * cellsPerSecond);
        if (cell + cellsOf(label) > axis.cells)
            break;
        labels = fitted(labels, cell) + label;
    }
    return labels;
}

} // namespace noctara
