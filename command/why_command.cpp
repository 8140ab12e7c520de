#include "command/why_command.h"

#include "command/night_player.h"
#include "host/host.h"
#include "input/bad_input.h"
#include "night/chosen_scenario.h"
#include "night/local_clock_text.h"
#include "night/scenario_times.h"
#include "night/situation.h"
#include "night/trace_reader.h"
#include "phones/replay/replayed_phone.h"

#include <fmt/format.h>

#include <fstream>
#include <iostream>
#include <istream>

namespace noctara {

namespace {

/// A line of a trace is a JSON object. A scenario file cannot begin so.
bool isTrace(const std::filesystem::path& file) {
    if (file == "-")
        return true;
    std::ifstream bytes(file);
    char first = 0;
    return bytes >> first && first == '{';
}

class Explanation {
public:
    Explanation(const WhyOptions& whyOptions, std::ostream& text) :
        options(whyOptions), out(text) {}

    int ofTrace(std::istream& lines, const std::string& name) {
        TraceReader reader(lines, name);
        Scenario scenario = chosenScenario(std::nullopt, options.night.overrides);
        if (!options.night.overrides.start)
            if (const TraceLine* first = reader.peek())
                scenario.start = first->at;
        ReplayedPhone phone(scenario, reader);
        Situation situation(scenario, instantIn(scenario), [&] { return phone.now(); });
        phone.observe(situation);
        monitorObserver = &situation;
        std::string parting;
        try {
            phone.play();
        } catch (const TraceAndRulesPart& parted) {
            parting = parted.what();
        }
        if (!situation.isReached())
            refuse(parting.empty() ? "the trace ends before it; give an earlier time"
                                   : parting + "; give an earlier time");
        return print(scenario, situation);
    }

    int ofScenario(const NightInput& input) {
        const Date at = instantIn(input.scenario);
        if (at > input.scenario.end)
            refuse("the night ends before it; give an earlier time");
        const auto phone = makePhone(input);
        Situation situation(input.scenario, at, [&] { return phone->now(); });
        phone->observe(situation);
        monitorObserver = &situation;
        playNight(*phone);
        return print(input.scenario, situation);
    }

private:
    [[noreturn]] void refuse(const std::string& why) const {
        throw BadInput(fmt::format("--at: {}: {}", inQuotes(options.at), why));
    }

    Date instantIn(const Scenario& scenario) const {
        const Date at = instantOrNext(writtenTime("--at", options.at, TimeForm::DayOptional),
                                      TimeZone(scenario.timezone), scenario.start);
        if (at < scenario.start)
            refuse("the night begins after it; give a later time");
        return at;
    }

    int print(const Scenario& scenario, const Situation& situation) {
        const TimeZone zone(scenario.timezone);
        const Date at = instantIn(scenario);
        out << dayText(zone, at) << ", " << timeText(zone, at) << "\n\n";
        for (const auto& line : situation.description())
            out << line << '\n';
        return 0;
    }

    const WhyOptions& options;
    std::ostream& out;
};

void refuseForTrace(const NightInputOptions& night) {
    const auto refuse = [](const char* option) {
        throw BadInput(
            fmt::format("{} has no effect on a trace; leave it out, or give the scenario "
                        "of the night",
                        option));
    };
    if (night.settings)
        refuse("--settings");
    if (!night.set.empty())
        refuse("--set");
    if (night.motion)
        refuse("--motion");
}

} // namespace

int explainInstant(const WhyOptions& options, std::ostream& out, std::ostream& complaints) {
    Explanation explanation(options, out);
    const auto& file = options.night.scenario;
    if (!file || !isTrace(*file))
        return explanation.ofScenario(readNightInput(options.night, complaints));
    refuseForTrace(options.night);
    if (*file == "-")
        return explanation.ofTrace(std::cin, "standard input");
    std::ifstream lines(*file);
    return explanation.ofTrace(lines, file->string());
}

} // namespace noctara
