/// Draws the past of a lane as a strip along the night.
#pragma once

#include "live/lane.h"
#include "live/screen.h"
#include "phones/model/local_time.h"

namespace noctara {

/// A stretch of time on the monotonic clock, in seconds, drawn in a number of cells.
struct TimeAxis {
    double start;
    double now;
    double end;
    int cells;

    /// When a cell begins.
    double at(int cell) const { return start + (end - start) * cell / cells; }
};

struct Glyph {
    const char* text; ///< One cell.
    Style style;
};

Glyph glyphOf(Mark mark);

/// The lane from the start until now. A cell with several marks shows the last one, with these
/// exceptions: the highest reading of a countdown, a sound rather than a vibration, a launch rather
/// than a quit, and a call or an idle sleep however short.
Line laneStrip(LaneName name, const Lane& lane, const TimeAxis& axis);

/// Times of day above their cells.
std::string timeLabels(const TimeZone& zone, const TimeAxis& axis);

} // namespace noctara
