/// Counts readings that disagree with the state of the monitor.
#pragma once

namespace noctara {

/// Counts readings in a row that disagree with the state of the monitor. The third changes the
/// state. A reading that agrees resets the count.
class Countdown {
public:
    static constexpr int readingsForChange = 3;

    /// Adds a reading: whether the phone lies in the wanted posture, and whether the monitor is in
    /// the sleep state. Returns true if the state must change, and then resets the count.
    bool add(bool lies, bool inSleepState) {
        if (lies == inSleepState) {
            disagreeing = 0;
            return false;
        }
        disagreeing = (disagreeing + 1) % readingsForChange;
        return disagreeing == 0;
    }

    /// The readings counted so far, 0 to 2.
    int count() const { return disagreeing; }

    bool underWay() const { return disagreeing != 0; }

private:
    int disagreeing = 0;
};

} // namespace noctara
