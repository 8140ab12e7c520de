#include "soak/shrink.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace noctara {

namespace {

class Shrinker {
public:
    Shrinker(Scenario failing, const std::function<bool(const Scenario&)>& test) :
        scenario(std::move(failing)), fails(test) {}

    Scenario shrink() {
        do {
            changed = false;
            shortenGap(scenario.events.size()); // First, because a shorter night is played faster.
            leaveOutItems(&Scenario::events);
            leaveOutItems(&Scenario::applications);
            leaveOutItems(&Scenario::wakes);
            simplifySettings();
            simplifyEvents();
            simplifyPhone();
            for (std::size_t i = scenario.events.size(); i-- > 0;)
                shortenGap(i);
        } while (changed);
        return scenario;
    }

private:
    /// Keeps the candidate if it fails too.
    bool keepIfFails(const Scenario& candidate) {
        if (!fails(candidate))
            return false;
        scenario = candidate;
        changed = true;
        return true;
    }

    template <typename Edit>
    bool attempt(Edit edit) {
        Scenario candidate = scenario;
        edit(candidate);
        return keepIfFails(candidate);
    }

    /// Half of the items at once, then ever smaller parts, down to single items.
    template <typename Items>
    void leaveOutItems(Items Scenario::*items) {
        for (std::size_t part = std::max<std::size_t>((scenario.*items).size() / 2, 1);;
             part /= 2) {
            for (std::size_t at = 0; at < (scenario.*items).size();) {
                const bool gone = attempt([&](Scenario& candidate) {
                    auto& all = candidate.*items;
                    const auto first = all.begin() + static_cast<std::ptrdiff_t>(at);
                    all.erase(first,
                              first + static_cast<std::ptrdiff_t>(std::min(part, all.size() - at)));
                });
                at += gone ? 0 : part;
            }
            if (part <= 1)
                return;
        }
    }

    /// Makes the time before the event, or after the last one, as short as possible.
    void shortenGap(std::size_t i) {
        const double least = i < scenario.events.size() ? 0 : 1; // The night has an end.
        double tooShort = least - 1;
        while (gapBefore(i) - tooShort > 1) {
            const double tried =
                tooShort < least ? least : std::floor((tooShort + gapBefore(i)) / 2);
            const double cut = gapBefore(i) - tried;
            const bool shorter = attempt([&](Scenario& candidate) {
                for (std::size_t later = i; later < candidate.events.size(); ++later)
                    candidate.events[later].at.secondsSince1970 -= cut;
                candidate.end.secondsSince1970 -= cut;
            });
            if (!shorter)
                tooShort = tried;
        }
    }

    double gapBefore(std::size_t i) const {
        const Date from = i == 0 ? scenario.start : scenario.events[i - 1].at;
        const Date to = i < scenario.events.size() ? scenario.events[i].at : scenario.end;
        return to.secondsSince1970 - from.secondsSince1970;
    }

    void simplifySettings() {
        if (!scenario.settings || attempt([](Scenario& candidate) { candidate.settings.reset(); }))
            return;
        const Dictionary before = *scenario.settings;
        for (const auto& [key, value] : before)
            attempt([&, &name = key](Scenario& candidate) { candidate.settings->remove(name); });
    }

    void simplifyEvents() {
        for (std::size_t i = 0; i < scenario.events.size(); ++i)
            if (const auto* change = std::get_if<SettingsChange>(&scenario.events[i].event)) {
                const Dictionary before = change->changed;
                for (const auto& [key, value] : before)
                    attempt([&, &name = key](Scenario& candidate) {
                        std::get<SettingsChange>(candidate.events[i].event).changed.remove(name);
                    });
            }
    }

    template <typename Group, typename... Members>
    void useDefaults(Group Scenario::*group, Members Group::*... members) {
        const Scenario usual;
        const auto useDefault = [&](auto member) {
            if (scenario.*group.*member != usual.*group.*member)
                attempt(
                    [&](Scenario& candidate) { candidate.*group.*member = usual.*group.*member; });
        };
        (useDefault(members), ...);
    }

    void simplifyPhone() {
        using Phone = Scenario::Phone;
        useDefaults(&Scenario::phone, &Phone::bundle, &Phone::machine, &Phone::idiom,
                    &Phone::corefoundation, &Phone::capabilities, &Phone::rates,
                    &Phone::telephonyManager, &Phone::telephonyServer, &Phone::gestalt,
                    &Phone::sounds, &Phone::charger, &Phone::deviceMotion, &Phone::idleSleep);
        using Radios = Scenario::Radios;
        useDefaults(&Scenario::radios, &Radios::airplane, &Radios::wifi, &Radios::wifiPowered,
                    &Radios::bluetooth, &Radios::bluetoothConnected, &Radios::cellularData,
                    &Radios::maxRate, &Radios::location, &Radios::push, &Radios::tethering,
                    &Radios::call);
        if (scenario.phone.posture != Scenario().phone.posture)
            attempt(
                [](Scenario& candidate) { candidate.phone.posture = Scenario().phone.posture; });
        if (scenario.timezone != Scenario().timezone)
            attempt([](Scenario& candidate) { candidate.timezone = Scenario().timezone; });
    }

    Scenario scenario;
    const std::function<bool(const Scenario&)>& fails;
    bool changed = false;
};

} // namespace

Scenario shrink(Scenario scenario, const std::function<bool(const Scenario&)>& fails) {
    return Shrinker(std::move(scenario), fails).shrink();
}

} // namespace noctara
