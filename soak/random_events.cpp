#include "soak/random_events.h"

#include "night/scenario_times.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace noctara {

namespace {

constexpr double mostSecondsForTimeAlone = 6 * 3600;

std::string acceleration(Dice& dice, std::int64_t x, std::int64_t y, std::int64_t z) {
    std::string text = "[";
    for (const std::int64_t axis : {x, y, z}) {
        const auto thousandths = axis + dice.between(-9, 9);
        std::array<char, 32> digits;
        std::snprintf(digits.data(), digits.size(), "%s%d.%03d", thousandths < 0 ? "-" : "",
                      static_cast<int>(std::abs(thousandths) / 1000),
                      static_cast<int>(std::abs(thousandths) % 1000));
        text += (text.size() > 1 ? ", " : "") + std::string(digits.data());
    }
    return text + ']';
}

std::string inlineTable(const std::vector<WrittenSetting>& settings) {
    std::string text;
    for (const auto& [key, value] : settings)
        text += (text.empty() ? " " : ", ") + keyText(key) + " = " + value;
    return "{" + text + (text.empty() ? "}" : " }");
}

class RandomEvents {
public:
    RandomEvents(Dice& thrown, const RandomNight& random) :
        dice(thrown), night(random), settings(random.settings), now(random.start) {}

    std::string text() {
        const auto most = howMany();
        if (settings.lacksKeys && most > 0 && dice.chance(80))
            announceSoon();
        const double rest = night.end.secondsSince1970 - night.start.secondsSince1970;
        const double phase = std::max(60.0, rest / (static_cast<double>(most) / 2 + 1));
        wait(phase * static_cast<double>(dice.between(0, 60)) / 100);
        for (bool putDown = dice.chance(85); written < most && now < night.end;
             putDown = !putDown) {
            layOrHold(putDown);
            const double until =
                now.secondsSince1970 + phase * static_cast<double>(dice.between(40, 160)) / 100;
            while (written < most && dice.chance(45)) {
                passTimeUpTo(until);
                somethingElse();
            }
            wait(until - now.secondsSince1970);
        }
        if (dice.chance(8))
            atTheEnd();
        return events;
    }

private:
    std::int64_t howMany() {
        if (dice.chance(4))
            return 0;
        return dice.chance(12) ? dice.between(1, 6) : dice.between(7, 40);
    }

    void wait(double seconds) { now.secondsSince1970 += std::floor(std::max(seconds, 0.0)); }

    /// Often zero, so that two events happen at one instant.
    void passTimeUpTo(double until) {
        const auto left = static_cast<std::int64_t>(until - now.secondsSince1970);
        if (left > 0 && !dice.chance(20))
            wait(static_cast<double>(dice.between(0, left)));
    }

    void happens(const std::string& action, const std::string& value) {
        events += "\n[[event]]\nat = " + randomTimeText(dice, night.zone, now, before) + '\n' +
                  action + " = " + value + '\n';
        before = now;
        ++written;
    }

    void turns(const std::string& action, bool on) { happens(action, on ? "true" : "false"); }

    int hour() const { return night.zone.components(now).hour; }

    void layOrHold(bool putDown) {
        if (night.fallsAsleep && dice.chance(60))
            turns("button", true);
        happens("posture", randomPosture(dice, putDown, settings.screenDown));
    }

    void announceSoon() {
        wait(static_cast<double>(dice.between(0, 40)));
        announce({});
    }

    /// Every announcement makes the monitor read the file again, so it must not find a scan
    /// interval below 1 there; nor may a full disk keep that from being put right.
    void announce(std::vector<WrittenSetting> changes) {
        if (settings.scanIntervalIsOdd) {
            happens("disk", "\"ok\"");
            std::erase_if(changes, [](const auto& change) { return change.key == "ScanInterval"; });
            changes.push_back({"ScanInterval", usualScanInterval(dice)});
            settings.scanIntervalIsOdd = false;
        }
        happens("settings", inlineTable(changes));
    }

    void changeSettings() {
        auto changes = randomChanges(dice, hour());
        if (dice.chance(8)) {
            std::erase_if(changes, [](const auto& change) { return change.key == "ScreenDown"; });
            settings.screenDown = !settings.screenDown;
            changes.push_back({"ScreenDown", truthText(dice, settings.screenDown)});
        } else {
            for (auto& change : changes)
                if (change.key == "ScreenDown")
                    change.value = truthText(dice, settings.screenDown);
        }
        announce(changes);
    }

    void removeSettings() {
        if (settings.scanIntervalIsOdd) {
            announce({});
            return;
        }
        std::string keys;
        for (const auto& key : randomKeys(dice))
            keys += (keys.empty() ? "\"" : ", \"") + key + '"';
        happens("remove_settings", '[' + keys + ']');
    }

    void loseSettingsFile() {
        happens("settings_file", dice.oneOf({"\"missing\"", "\"damaged\""}));
        if (dice.chance(70))
            announceSoon();
    }

    void changeDisk() {
        happens("disk", dice.oneOf({"\"ok\"", "\"ok\"", "\"full\"", "\"read-only\""}));
    }

    void changeCharger() { turns("charger", dice.chance(50)); }

    void changeCall() {
        const char* const call =
            dice.oneOf({"\"incoming\"", "\"outgoing\"", "\"active\"", "\"in-call\""});
        happens("call", call);
        if (dice.chance(25))
            return;
        wait(static_cast<double>(dice.between(1, 90)));
        happens("call", "\"none\"");
    }

    void changeRadio() {
        const char* const radio = dice.oneOf(
            {"airplane", "wifi", "bluetooth", "cellular_data", "location", "bluetooth_connected"});
        turns(radio, dice.chance(50));
    }

    void changeMaxRate() { happens("max_rate", dice.oneOf({"\"2G\"", "\"3G\"", "\"4G\""})); }

    void pressButton() { turns("button", true); }

    void changeTelephonyServer() { turns("telephony_server", dice.chance(60)); }

    /// Mostly types that the system sends: may it sleep, it will sleep, it will not sleep, it has
    /// woken up.
    void sendPowerMessage() {
        const char* const known =
            dice.oneOf({"0xE0000270", "0xE0000280", "0xE0000290", "0xE0000300", "0"});
        const auto any = std::to_string(dice.between(0, 0xFFFFFFFF));
        happens("power_message", dice.chance(85) ? known : any);
    }

    void setClock() {
        const double wall = now.secondsSince1970 + wallOffset + clockJump();
        const DateComponents parts = night.zone.components({wall});
        wallOffset = night.zone.firstDate(parts).secondsSince1970 - now.secondsSince1970;
        happens("clock", localText(parts));
    }

    /// Back by at most two hours, by which a wait of the monitor is then longer.
    double clockJump() {
        const double direction = dice.chance(60) ? 1 : -1;
        const auto kind = dice.between(1, 100);
        if (kind <= 40)
            return direction * static_cast<double>(dice.between(1, 59));
        if (kind <= 80)
            return direction * static_cast<double>(dice.between(1, 30)) * 60;
        if (kind <= 85)
            return -3600.0 * static_cast<double>(dice.between(1, 2));
        return 3600.0 * static_cast<double>(dice.between(1, 40));
    }

    void stop() {
        if (now.secondsSince1970 > (night.start.secondsSince1970 + night.end.secondsSince1970) / 2)
            turns("stop", true);
    }

    /// At the last instant and after the end, when events do not happen.
    void atTheEnd() {
        now = {std::max(now.secondsSince1970, night.end.secondsSince1970)};
        pressButton();
        wait(static_cast<double>(dice.between(1, 100)));
        changeCharger();
    }

    struct Kind {
        int weight;
        void (RandomEvents::*happen)();
    };

    void somethingElse() {
        static constexpr std::array kinds{
            Kind{18, &RandomEvents::changeSettings},
            Kind{5, &RandomEvents::removeSettings},
            Kind{5, &RandomEvents::loseSettingsFile},
            Kind{5, &RandomEvents::changeDisk},
            Kind{8, &RandomEvents::changeCharger},
            Kind{8, &RandomEvents::changeCall},
            Kind{18, &RandomEvents::changeRadio},
            Kind{5, &RandomEvents::changeMaxRate},
            Kind{7, &RandomEvents::pressButton},
            Kind{4, &RandomEvents::changeTelephonyServer},
            Kind{7, &RandomEvents::sendPowerMessage},
            Kind{5, &RandomEvents::setClock},
            Kind{1, &RandomEvents::stop},
        };
        int all = 0;
        for (const Kind& kind : kinds)
            all += kind.weight;
        auto left = dice.between(1, all);
        for (const Kind& kind : kinds)
            if ((left -= kind.weight) <= 0) {
                (this->*kind.happen)();
                return;
            }
    }

    Dice& dice;
    const RandomNight& night;
    RandomSettings settings; ///< The current settings.
    Date now;                ///< By the monotonic clock.
    Date before = now;       ///< When something last happened.
    double wallOffset = 0;
    std::int64_t written = 0;
    std::string events;
};

} // namespace

std::string randomPosture(Dice& dice, bool putDown, bool screenDown) {
    const bool asWord = dice.chance(75);
    if (putDown && !asWord)
        return acceleration(dice, 0, 0, screenDown ? 1000 : -1000);
    if (putDown)
        return screenDown ? "\"screen-down\"" : "\"screen-up\"";
    if (dice.chance(15))
        return screenDown ? "\"screen-up\"" : "\"screen-down\"";
    if (asWord)
        return dice.oneOf(
            {"\"in-hand\"", "\"in-hand\"", "\"in-pocket\"", "\"moving\"", "\"none\""});
    const auto x = dice.between(-1500, 1500);
    const auto y = dice.between(-1500, 1500);
    const auto z = dice.between(-1500, 1500);
    return acceleration(dice, x, y, z);
}

std::string randomTimeText(Dice& dice, const TimeZone& zone, Date instant, Date from) {
    const DateComponents parts = zone.components(instant);
    const std::string text = localText(parts);
    const double ahead = instant.secondsSince1970 - from.secondsSince1970;
    const bool mayBeTimeAlone = ahead >= 0 && ahead < mostSecondsForTimeAlone;
    const bool comesTwice = zone.firstDate(parts) != instant;
    const bool wantsDate = dice.chance(30);
    return mayBeTimeAlone && (comesTwice || !wantsDate) ? text.substr(text.find('T') + 1) : text;
}

std::string keyText(const std::string& key) {
    const bool isBare = std::all_of(key.begin(), key.end(), [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
               c == '-' || c == '_';
    });
    return isBare ? key : '"' + key + '"';
}

std::string randomEvents(Dice& dice, const RandomNight& night) {
    return RandomEvents(dice, night).text();
}

} // namespace noctara
