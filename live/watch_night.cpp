#include "live/watch_night.h"

#include "input/bad_input.h"
#include "live/controls.h"
#include "live/leaving_signals.h"
#include "live/terminal.h"
#include "live/views.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <exception>
#include <unistd.h>

namespace noctara {

namespace {

/// Seconds between two frames.
constexpr double shortestFrame = 0.04;
constexpr double longestFrame = 0.2;

/// A program that was stopped or a machine that was suspended goes on where it was.
constexpr double mostElapsed = 0.25;

class Stopwatch {
public:
    /// The seconds since the last call.
    double lap() {
        const auto now = std::chrono::steady_clock::now();
        const std::chrono::duration<double> elapsed = now - last;
        last = now;
        return elapsed.count();
    }

private:
    std::chrono::steady_clock::time_point last = std::chrono::steady_clock::now();
};

/// Signals go to the thread that shows the night.
void launch(LiveNight& night) {
    const NoSignals noSignals;
    night.phone.launch();
}

/// Returns the signal that asked the program to end, if one did.
std::optional<int> playAndShow(LiveNight& night, double speed) {
    LeavingSignals signals;
    Terminal terminal;
    Controls controls(night, speed);
    Stopwatch stopwatch;
    while (!night.hasEnded() && !controls.wantsToLeave()) {
        terminal.show(screenOf(night, controls, terminal.size()));
        const double frame = controls.timeRuns()
                                 ? std::clamp(1 / controls.speed(), shortestFrame, longestFrame)
                                 : -1;
        const auto woken = signals.waitForInput(STDIN_FILENO, frame);
        if (const auto signal = signals.arrived())
            return signal;
        if (woken == LeavingSignals::Woken::byHangUp)
            return SIGHUP;
        controls.pass(std::min(stopwatch.lap(), mostElapsed));
        for (auto key = terminal.key(); key && !controls.wantsToLeave(); key = terminal.key())
            controls.press(*key);
    }
    return std::nullopt;
}

} // namespace

WatchedNight watchNight(LiveNight& night, double speed) {
    WatchedNight watched;
    try {
        launch(night);
        watched.signal = playAndShow(night, speed);
    } catch (const BadInput&) {
        throw;
    } catch (const std::exception& error) {
        watched.wrong = std::string("the night ended early: ") + error.what();
    }
    night.finish();
    return watched;
}

} // namespace noctara
