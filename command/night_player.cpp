#include "command/night_player.h"

#include "host/host.h"
#include "settings/setting_keys.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace noctara {

namespace {

/// Keeps an event of the settings screen from changing these settings.
struct Keep {
    void operator()(SettingsChange& change) const {
        for (const auto& [key, value] : settings)
            change.changed.remove(key);
    }
    void operator()(SettingsRemoval& removal) const {
        std::erase_if(removal.keys, [&](const auto& key) { return settings.find(key); });
    }
    template <typename Other>
    void operator()(Other&) const {}

    const Dictionary& settings;
};

} // namespace

std::unique_ptr<SimulatedPhone> makePhone(const NightInput& input,
                                          std::unique_ptr<FileStore> files) {
    auto phone = std::make_unique<SimulatedPhone>(input.scenario, std::move(files));
    if (input.motion)
        phone->motion.source = [&input, &made = *phone]() -> std::optional<Acceleration> {
            const double since = made.clock.monotonic - input.motionBegins.secondsSince1970;
            return since < 0 ? made.motion.posedSample() : input.motion->at(since);
        };
    return phone;
}

std::optional<std::string> playNight(SimulatedPhone& phone) {
    try {
        phone.launch();
        phone.playToTheEnd();
    } catch (const std::exception& error) {
        return std::string("the night ended early: ") + error.what();
    }
    return std::nullopt;
}

std::unique_ptr<NightFindings> findingsOf(const NightInput& input) {
    const auto phone = makePhone(input);
    auto findings = std::make_unique<NightFindings>(input.scenario, [&] { return phone->now(); });
    if (input.motion)
        findings->obstacles.followsRecording(input.motionBegins);
    phone->observe(*findings);
    monitorObserver = findings.get();
    if (playNight(*phone))
        return nullptr;
    findings->finish();
    return findings;
}

Scenario withSettings(Scenario scenario, const Dictionary& settings) {
    if (!scenario.settings)
        scenario.settings = defaultSettings();
    for (const auto& [key, value] : settings)
        scenario.settings->set(key, value);
    return scenario;
}

Retry retryOf(const NightInput& input) {
    return [&input](const Dictionary& settings) {
        NightInput changed{withSettings(input.scenario, settings), input.motion,
                           input.motionBegins};
        for (auto& event : changed.scenario.events)
            std::visit(Keep{settings}, event.event);
        return findingsOf(changed);
    };
}

} // namespace noctara
