/// Plays nights on the simulated phone for the subcommands.
#pragma once

#include "night/advice.h"
#include "night/night_findings.h"
#include "phones/model/file_store.h"
#include "phones/model/scenario.h"
#include "phones/simulated/simulated_phone.h"
#include "recording/recording.h"

#include <memory>
#include <optional>
#include <string>

namespace noctara {

/// All that decides how a night goes.
struct NightInput {
    Scenario scenario;
    std::shared_ptr<const Recording> motion; ///< Replaces the scenario's postures. May be null.
    Date motionBegins;
};

/// A phone on which the night has not begun. `input` must outlive it.
std::unique_ptr<SimulatedPhone> makePhone(const NightInput& input,
                                          std::unique_ptr<FileStore> files = makeMemoryFileStore());

/// Launches the phone and plays its night. Returns a clause that says why the night ended early, if
/// it did.
std::optional<std::string> playNight(SimulatedPhone& phone);

/// Plays the night with files in memory. Null if it ended early.
std::unique_ptr<NightFindings> findingsOf(const NightInput& input);

/// The scenario with these settings at the start. The others keep their values; if the scenario has
/// no settings file, they have their defaults.
Scenario withSettings(Scenario scenario, const Dictionary& settings);

/// Plays the night again with files in memory. No event changes the settings that are given.
/// `input` must outlive the result.
Retry retryOf(const NightInput& input);

} // namespace noctara
