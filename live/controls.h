/// What the keys do, and how fast the night goes by.
#pragma once

#include "live/live_night.h"
#include "live/settings_menu.h"

#include <span>
#include <string>
#include <string_view>

namespace noctara {

/// Keys that are no character. Others are their character.
namespace keys {
inline constexpr int up = 0x110000;
inline constexpr int down = 0x110001;
inline constexpr int left = 0x110002;
inline constexpr int right = 0x110003;
inline constexpr int pageUp = 0x110004;
inline constexpr int pageDown = 0x110005;
inline constexpr int escape = 27;
inline constexpr int enter = '\n';
} // namespace keys

/// How fast the night goes by, in seconds of the night for each second of real time.
inline constexpr double slowest = 0.1;
inline constexpr double fastest = 86400;
inline constexpr double defaultSpeed = 600;

class Controls {
public:
    enum class Page { night, settings, help };

    /// A key of the night page.
    struct Command {
        int key;
        std::string_view shownKey;
        std::string_view word;    ///< For the line of keys. Empty: not shown there.
        std::string_view meaning; ///< For the help.
        void (Controls::*act)();
    };
    static std::span<const Command> commands();

    /// The night must outlive the controls.
    Controls(LiveNight& night, double speed);

    /// Does nothing for a key without a meaning.
    void press(int key);

    /// Plays on for this much real time, unless time stands still.
    void pass(double seconds);

    /// Time stands still in a pause, and while the help or the menu is open.
    bool timeRuns() const { return !paused && openPage == Page::night; }
    bool isPaused() const { return paused; }
    bool wantsToLeave() const { return leaves; }
    double speed() const { return timesRealTime; }
    Page page() const { return openPage; }
    const SettingsMenu& settings() const { return menu; }

    /// What the last key could not do. Empty if there is nothing to say.
    const std::string& notice() const { return saying; }

private:
    void pressInMenu(int key);

    void pause() { paused = !paused; }
    void step();
    void faster();
    void slower();
    void playTheRest();
    void openSettings() { openPage = Page::settings; }
    void openHelp() { openPage = Page::help; }
    void leave() { leaves = true; }

    void layScreenDown() { pose(NamedPosture::ScreenDown); }
    void layScreenUp() { pose(NamedPosture::ScreenUp); }
    void takeIntoHand() { pose(NamedPosture::InHand); }
    void pose(NamedPosture posture);
    void plug();
    void call();
    void pressButton();
    void switchAirplaneMode();
    void switchWifi();
    void switchBluetooth();

    LiveNight& night;
    SettingsMenu menu;
    double timesRealTime;
    double playedTo; ///< On the monotonic clock, with a fraction.
    bool paused = false;
    bool leaves = false;
    Page openPage = Page::night;
    std::string saying;
};

} // namespace noctara
