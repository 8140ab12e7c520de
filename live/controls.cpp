#include "live/controls.h"

#include <algorithm>
#include <array>

namespace noctara {

namespace {

constexpr std::array speeds{0.1,  0.2,   0.5,   1.0,    2.0,    5.0,    10.0,    20.0,   60.0,
                            120., 300.0, 600.0, 1200.0, 1800.0, 3600.0, 10800.0, 21600., 86400.0};

} // namespace

std::span<const Controls::Command> Controls::commands() {
    static constexpr std::array all{
        Command{' ', "Space", "pause", "pause, go on", &Controls::pause},
        Command{'n', "n", "step", "to the next reading", &Controls::step},
        Command{'+', "+", "", "faster", &Controls::faster},
        Command{'-', "-", "", "slower", &Controls::slower},
        Command{'e', "e", "", "to the end", &Controls::playTheRest},
        Command{'d', "d", "down", "lay down, screen down", &Controls::layScreenDown},
        Command{'u', "u", "up", "lay down, screen up", &Controls::layScreenUp},
        Command{'h', "h", "hand", "take into the hand", &Controls::takeIntoHand},
        Command{'c', "c", "plug", "charger: plug, unplug", &Controls::plug},
        Command{'t', "t", "call", "call: comes in, ends", &Controls::call},
        Command{'p', "p", "", "press a button", &Controls::pressButton},
        Command{'s', "s", "settings", "change a setting", &Controls::openSettings},
        Command{'a', "a", "", "airplane mode by hand", &Controls::switchAirplaneMode},
        Command{'w', "w", "", "Wi-Fi by hand", &Controls::switchWifi},
        Command{'b', "b", "", "Bluetooth by hand", &Controls::switchBluetooth},
        Command{'?', "?", "help", "this help", &Controls::openHelp},
        Command{'q', "q", "quit", "quit with a summary", &Controls::leave},
    };
    return all;
}

Controls::Controls(LiveNight& liveNight, double speed) :
    night(liveNight), menu(liveNight), timesRealTime(speed), playedTo(liveNight.now()) {}

void Controls::press(int key) {
    saying.clear();
    switch (openPage) {
    case Page::help:
        openPage = Page::night;
        return;
    case Page::settings:
        pressInMenu(key);
        return;
    case Page::night:
        break;
    }
    // The plus shares its key with the equals sign on many keyboards.
    const int meant = key == '=' ? '+' : key == keys::right ? 'n' : key;
    for (const auto& command : commands())
        if (command.key == meant)
            (this->*command.act)();
}

void Controls::pressInMenu(int key) {
    switch (key) {
    case keys::up:
        menu.move(-1);
        break;
    case keys::down:
        menu.move(1);
        break;
    case keys::pageUp:
        menu.move(-10);
        break;
    case keys::pageDown:
        menu.move(10);
        break;
    case keys::right:
    case keys::enter:
    case ' ':
    case '+':
    case '=':
        menu.change(1);
        break;
    case keys::left:
    case '-':
        menu.change(-1);
        break;
    case keys::escape:
    case 's':
    case 'q':
        openPage = Page::night;
        break;
    default:
        break;
    }
}

void Controls::pass(double seconds) {
    if (!timeRuns())
        return;
    playedTo = std::max(playedTo, night.now()) + seconds * timesRealTime;
    night.playTo(playedTo);
}

void Controls::step() {
    paused = true;
    if (!night.playReading() && !night.hasEnded())
        saying = "no reading for an hour";
}

void Controls::faster() {
    const auto* const next = std::upper_bound(speeds.begin(), speeds.end(), timesRealTime);
    if (next != speeds.end())
        timesRealTime = *next;
}

void Controls::slower() {
    const auto* const next = std::lower_bound(speeds.begin(), speeds.end(), timesRealTime);
    if (next != speeds.begin())
        timesRealTime = *(next - 1);
}

void Controls::playTheRest() {
    night.playTo(night.night.end.secondsSince1970);
}

void Controls::pose(NamedPosture posture) {
    night.act(PostureChange{posture});
    const auto measured = night.phone.motion.measured();
    if (measured != night.phone.motion.posedSample())
        saying = "the accelerometer follows the recording";
}

void Controls::plug() {
    night.act(ChargerChange{!night.isOnCharger()});
}

void Controls::call() {
    night.act(CallChange{night.phone.radios.call == CallState::none ? CallState::incoming
                                                                    : CallState::none});
}

void Controls::pressButton() {
    night.act(ButtonPress{});
}

void Controls::switchAirplaneMode() {
    night.act(AirplaneModeSwitch{!night.phone.radios.states().airplane});
}

void Controls::switchWifi() {
    night.act(WifiSwitch{!night.phone.radios.states().wifi});
}

void Controls::switchBluetooth() {
    night.act(BluetoothSwitch{!night.phone.radios.states().bluetooth});
}

} // namespace noctara
