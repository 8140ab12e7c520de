/// What kept the phone from the quiet state, and for how long.
#pragma once

#include "monitor/decisions.h"
#include "night/elapsed_time.h"
#include "phones/model/phone_observer.h"
#include "phones/model/scenario.h"

#include <array>
#include <cstddef>
#include <optional>
#include <vector>

namespace noctara {

/// The reason why an instant is no part of a countdown to the quiet state. In the quiet state it is
/// the reason why the phone does not come back.
enum class Obstacle {
    notStarted,    ///< The library does nothing in this process, or SpringBoard has not launched.
    ended,         ///< The monitor was told to stop.
    switchedOff,   ///< The setting Enabled is off.
    suspended,     ///< Airplane mode was changed by hand.
    outsideWindow, ///< The hours of the settings.
    notOnCharger,  ///< The setting EnableOnAC is on.
    idleSleep,     ///< The phone itself sleeps. Told only where it would take readings otherwise.
    noSample,      ///< The accelerometer delivers nothing.
    deviceMotion,  ///< The phone delivers device motion, which never counts as lying.
    moving,        ///< The length of the reading is not that of a phone at rest.
    notLaidDown,   ///< At rest, but more tilted than any Sensitivity allows.
    wrongSide,     ///< At rest on the other side, within what Sensitivity 0 allows.
    tooTilted,     ///< At rest on the wanted side, within what Sensitivity 0 allows.
    none,          ///< The phone lies as the settings want it.
};

inline constexpr std::size_t obstacleKinds = static_cast<std::size_t>(Obstacle::none) + 1;

/// The spread of a measured value.
struct Spread {
    double lowest = 0;
    double highest = 0;
    double median = 0; ///< To a tenth of a degree or a hundredth of g.
};

class Obstacles {
public:
    explicit Obstacles(const Scenario& scenario);

    /// A recording provides the readings from `from` on. Postures of the scenario then have no
    /// effect.
    void followsRecording(Date from) { recordingBegins = from; }

    void happens(const Happening& happening);
    void decided(Date at, const Decision& decision);

    /// Ends the night. The methods below may be called then.
    void finish(Date at);

    /// Seconds of the night, outside the quiet state, with this obstacle.
    double seconds(Obstacle obstacle) const { return ofEach[index(obstacle)].seconds; }

    /// When it was met first, outside the quiet state or in it. Absent if it never was.
    std::optional<Date> firstMet(Obstacle obstacle) const {
        return ofEach[index(obstacle)].firstMet;
    }

    /// The tilt, in degrees off the wanted posture or, for wrongSide, off the other one. Only for
    /// wrongSide, tooTilted, notLaidDown and none, outside the quiet state. Absent without
    /// readings.
    std::optional<Spread> tilt(Obstacle obstacle) const;

    /// The length of the readings that count as moving, in g. Absent if there is none.
    std::optional<Spread> movingLength() const { return lengths.spread(); }

    /// Countdowns to the quiet state that a reading broke.
    int brokenCountdowns() const { return broken; }

    /// Returns from the quiet state of a phone that was not picked up: its readings were too tilted
    /// or moving, and it was quiet again within half an hour.
    int slips() const { return slipped; }

    /// The tilt of the readings of these returns that were too tilted. Absent if there is none.
    std::optional<Spread> slipTilt() const { return slipTilts.spread(); }

    /// When the phone was last put into another posture than the wanted one, if it is in the quiet
    /// state since before that. Absent if a recording provides the readings.
    std::optional<Date> pickedUp() const { return pickedUpAt; }

    /// What holds at the end of the night.
    Obstacle last() const { return current; }
    Date lastSince() const { return since; }

    /// The settings that were loaded last. Absent if none were loaded.
    const std::optional<Settings>& settings() const { return loaded; }

private:
    /// Counts values in steps, so that its size does not depend on the length of the night.
    class Histogram {
    public:
        explicit Histogram(double stepSize) : step(stepSize) {}
        void add(double value);
        std::optional<Spread> spread() const;

    private:
        double step;
        std::vector<int> counts;
        int total = 0;
        double lowest = 0;
        double highest = 0;
    };

    struct Met {
        double seconds = 0;
        std::optional<Date> firstMet;
        Histogram tilts{0.1};
    };

    static std::size_t index(Obstacle obstacle) { return static_cast<std::size_t>(obstacle); }

    void meet(Obstacle obstacle, Date at);
    void count(const ReadingCounted& counted);
    void changeState(bool nowQuiet, Date at);
    bool takesReadings() const;
    bool liesIn(const Posture& posture) const;

    ElapsedTime elapsed;
    std::optional<Date> recordingBegins;
    std::array<Met, obstacleKinds> ofEach;
    Histogram lengths{0.01};
    Histogram slipTilts{0.1};
    std::optional<Settings> loaded;

    Obstacle current = Obstacle::notStarted;
    Date since;
    double currentBegan; ///< On the monotonic clock.
    bool quiet = false;
    Obstacle beforeIdleSleep = Obstacle::notStarted;
    bool changedByHand = false;
    std::optional<Date> pickedUpAt;

    struct Seen {
        Obstacle obstacle = Obstacle::none;
        double tilt = 0; ///< In degrees.
    };
    Seen reading;
    int inARow = 0;
    int slippingInARow = 0; ///< Of the readings in a row, those of a phone that still lies there.
    std::optional<double> mayHaveSlipped; ///< When it came back so, on the monotonic clock.
    int broken = 0;
    int slipped = 0;
};

} // namespace noctara
