/// Scenario files. A valid one is played for a few minutes, and its trace is replayed.
#include "night/scenario_file.h"
#include "tests/fuzz/rules.h"
#include "tests/phones/replay/a_told_night.h"

#include <algorithm>

namespace noctara {
namespace {

constexpr double longestNight = 600;
constexpr std::size_t mostEvents = 200;

void requireSound(const Scenario& scenario) {
    require(scenario.start < scenario.end, "a night ends after its start");
    require(scenario.end.secondsSince1970 - scenario.start.secondsSince1970 <= 7 * 86400,
            "a night is a week at most");
    require(std::is_sorted(scenario.events.begin(), scenario.events.end(),
                           [](const auto& one, const auto& other) { return one.at < other.at; }),
            "events are in order");
}

} // namespace
} // namespace noctara

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace noctara;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    Scenario scenario;
    const auto refused = refusal([&] { scenario = parseScenario(text, "night.toml"); });
    if (refused) {
        require(refused->starts_with("night.toml"), "a message names the file", *refused);
        return 0;
    }
    requireSound(scenario);
    if (scenario.events.size() > mostEvents)
        return 0;
    scenario.end.secondsSince1970 =
        std::min(scenario.end.secondsSince1970, scenario.start.secondsSince1970 + longestNight);
    const ToldNight night = played(scenario);
    requirePlainLines(night.story);
    require(replayed(scenario, night.trace) == night.story,
            "the story of a trace is the story of its night", night.story);
    return 0;
}
