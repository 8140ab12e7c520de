#include "soak/random_settings.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace noctara {

const std::vector<std::string> applicationIdentifiers{
    "com.apple.mobiletimer", "com.example.sleeprecorder", "com.example.hidden",
    "com.example.radio",     "com.example.Dämmerung",
};

namespace {

/// A boolean setting, and how often it is on.
struct Switch {
    std::string_view key;
    int percentOn;
};

constexpr std::array switches{
    Switch{"Enabled", 95},      Switch{"ScreenDown", 70}, Switch{"ActiveOnSleep", 60},
    Switch{"DetectManual", 70}, Switch{"TimeLimit", 35},  Switch{"PlaySound", 70},
    Switch{"Vibrate", 70},      Switch{"EnableOnAC", 15}, Switch{"AirplaneSwitch", 45},
    Switch{"WifiSwitch", 40},   Switch{"BTSwitch", 40},   Switch{"PhoneSwitch", 30},
    Switch{"EdgeSwitch", 30},   Switch{"3GSwitch", 45},   Switch{"LocationSwitch", 40},
    Switch{"Debug", 35},        Switch{"Stop", 10},
};

constexpr std::array integers{"ScanInterval", "Sensitivity", "StartHour", "StopHour"};

/// An integer as a settings file may have it: mostly an integer, sometimes a real number or text.
std::string integerText(Dice& dice, std::int64_t integer) {
    const std::string digits = std::to_string(integer);
    if (dice.chance(88))
        return digits;
    return dice.chance(50) ? '"' + digits + '"' : digits + ".0";
}

std::int64_t sensitivity(Dice& dice) {
    return dice.chance(60) ? 5 : dice.between(-2, 9);
}

std::int64_t startHour(Dice& dice, int hour) {
    if (dice.chance(60))
        return dice.between(20, 23);
    return dice.chance(50) ? hour + dice.between(0, 1) : dice.between(-3, 30);
}

std::int64_t stopHour(Dice& dice, int hour) {
    if (dice.chance(60))
        return dice.between(5, 9);
    return dice.chance(60) ? hour + dice.between(0, 2) : dice.between(-3, 30);
}

WrittenSetting randomSwitch(Dice& dice, const Switch& known) {
    const bool on = dice.chance(known.percentOn);
    return {std::string(known.key), truthText(dice, on)};
}

WrittenSetting randomInteger(Dice& dice, std::string_view key, int hour) {
    const std::int64_t value = key == "Sensitivity" ? sensitivity(dice)
                               : key == "StartHour" ? startHour(dice, hour)
                                                    : stopHour(dice, hour);
    return {std::string(key), integerText(dice, value)};
}

/// A key for an application that is installed, or is not, or has no identifier.
WrittenSetting applicationToLaunch(Dice& dice) {
    std::string identifier = dice.oneOf(applicationIdentifiers);
    if (dice.chance(20))
        identifier = dice.oneOf({"", "com.example.notinstalled"});
    const bool launched = dice.chance(75);
    return {"launch-app-" + identifier, truthText(dice, launched)};
}

/// Keys that a later version of the settings screen or another program might have written.
WrittenSetting unknownSetting(Dice& dice) {
    return {dice.oneOf({"Version", "LaunchCount", "Neu – \\\"heute\\\""}),
            dice.oneOf({"\"1.2\"", "\"täglich\"", "3.25", "-7", "2014-03-01T12:00:00",
                        "2014-03-01T12:00:00+05:30", "[1, \"two\", [3.5, false]]",
                        "{ nested = { deeper = [true] }, other = 2 }", "[]", "{}"})};
}

void set(std::vector<WrittenSetting>& settings, const WrittenSetting& setting) {
    const auto same =
        std::find_if(settings.begin(), settings.end(),
                     [&](const WrittenSetting& other) { return other.key == setting.key; });
    if (same == settings.end())
        settings.push_back(setting);
    else
        same->value = setting.value;
}

/// Shuffles the settings; the file has them in this order.
void shuffle(Dice& dice, std::vector<WrittenSetting>& settings) {
    for (std::size_t left = settings.size(); left > 1; --left)
        std::swap(settings[left - 1], settings[static_cast<std::size_t>(
                                          dice.between(0, static_cast<std::int64_t>(left) - 1))]);
}

} // namespace

std::string truthText(Dice& dice, bool truth) {
    if (dice.chance(85))
        return truth ? "true" : "false";
    return truth ? dice.oneOf({"1", "7", "-1", "1.0", "0.5", "\"1\"", "\"YES\"", "\"true\""})
                 : dice.oneOf({"0", "0.0", "\"0\"", "\"NO\"", "\"\"", "\"off\""});
}

std::string usualScanInterval(Dice& dice) {
    if (dice.chance(60))
        return "1";
    return dice.oneOf({"1", "2", "2", "3", "4", "true", "\"2\"", "2.9"});
}

RandomSettings randomSettings(Dice& dice, int hour) {
    RandomSettings random;
    if (dice.chance(12))
        return random;

    random.file.emplace();
    const bool empty = dice.chance(6);
    const int percentMissing = empty ? 100 : dice.chance(35) ? 15 : 0;
    const auto add = [&](const WrittenSetting& setting) {
        const bool isThere = !dice.chance(percentMissing);
        if (isThere)
            random.file->push_back(setting);
        random.lacksKeys = random.lacksKeys || !isThere;
        return isThere;
    };

    for (const Switch& known : switches) {
        Switch wanted = known;
        if (known.key == "ScreenDown") {
            random.screenDown = dice.chance(known.percentOn);
            wanted.percentOn = random.screenDown ? 100 : 0;
        }
        if (!add(randomSwitch(dice, wanted)) && known.key == "ScreenDown")
            random.screenDown = true;
    }
    for (const std::string_view key : integers) {
        if (key != "ScanInterval") {
            add(randomInteger(dice, key, hour));
            continue;
        }
        const bool odd = dice.chance(8);
        const std::string interval =
            odd ? dice.oneOf({"0", "-1", "-3", "0.4", "\"often\"", "false"})
                : usualScanInterval(dice);
        random.scanIntervalIsOdd = add({std::string(key), interval}) && odd;
    }
    for (auto left = empty || dice.chance(45) ? 0 : dice.between(1, 5); left > 0; --left)
        set(*random.file, applicationToLaunch(dice));
    if (!empty && dice.chance(15))
        set(*random.file, unknownSetting(dice));
    if (dice.chance(40))
        shuffle(dice, *random.file);
    return random;
}

std::vector<WrittenSetting> randomChanges(Dice& dice, int hour) {
    std::vector<WrittenSetting> changes;
    for (auto left = dice.chance(15) ? 0 : dice.between(1, 4); left > 0; --left) {
        const auto kind = dice.between(1, 100);
        if (kind <= 55)
            set(changes, randomSwitch(dice, dice.oneOf(switches)));
        else if (kind <= 65)
            set(changes, {"ScanInterval", usualScanInterval(dice)});
        else if (kind <= 80)
            set(changes,
                randomInteger(dice, dice.oneOf({"Sensitivity", "StartHour", "StopHour"}), hour));
        else if (kind <= 95)
            set(changes, applicationToLaunch(dice));
        else
            set(changes, unknownSetting(dice));
    }
    return changes;
}

std::vector<std::string> randomKeys(Dice& dice) {
    std::vector<std::string> keys;
    for (auto left = dice.between(1, 3); left > 0; --left) {
        const auto kind = dice.between(1, 100);
        if (kind <= 65)
            keys.emplace_back(dice.oneOf(switches).key);
        else if (kind <= 80)
            keys.emplace_back(dice.oneOf(integers));
        else if (kind <= 95)
            keys.push_back(applicationToLaunch(dice).key);
        else
            keys.emplace_back("Nothing");
    }
    return keys;
}

} // namespace noctara
