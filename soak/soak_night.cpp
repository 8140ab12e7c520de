#include "soak/soak_night.h"

#include "host/host.h"
#include "soak/child_process.h"
#include "soak/night_watch.h"

#include <nlohmann/json.hpp>

#include <exception>
#include <unistd.h>

namespace noctara {

namespace {

const std::string playedToTheEnd = "A night can be played to its end.";

/// The invariants of a night that is not played, for their sentences.
template <typename Read>
std::vector<std::string_view> sentences(Read read) {
    const Scenario scenario;
    SimulatedPhone phone(scenario);
    const NightWatch watch(phone, scenario);
    std::vector<std::string_view> texts;
    for (const auto& invariant : watch.invariants())
        read(*invariant, texts);
    return texts;
}

void count(const NightWatch& watch, const Scenario& scenario, SoakCounts& counts) {
    std::size_t excuses = 0;
    std::size_t checks = 0;
    for (const auto& invariant : watch.invariants()) {
        counts.checks.at(checks++) += invariant->checks;
        for (const auto& excuse : invariant->excuses)
            counts.excuses.at(excuses++) += excuse.times;
    }
    ++counts.nights;
    counts.timesQuiet += static_cast<std::uint64_t>(watch.timesQuiet());
    counts.seconds +=
        static_cast<std::uint64_t>(scenario.end.secondsSince1970 - scenario.start.secondsSince1970);
}

std::string textOf(const std::optional<Breach>& breach) {
    if (!breach)
        return {};
    return nlohmann::json{breach->invariant, breach->at.secondsSince1970, breach->what}.dump();
}

std::optional<Breach> breachOf(const std::string& text) {
    if (text.empty())
        return std::nullopt;
    const auto values = nlohmann::json::parse(text);
    return Breach{values[0], {values[1]}, values[2]};
}

} // namespace

std::vector<std::string_view> invariantSentences() {
    return sentences(
        [](const Invariant& invariant, auto& texts) { texts.push_back(invariant.sentence); });
}

std::vector<std::string_view> excuseSentences() {
    return sentences([](const Invariant& invariant, auto& texts) {
        for (const auto& excuse : invariant.excuses)
            texts.push_back(excuse.sentence);
    });
}

std::optional<Breach> playWatched(const Scenario& scenario, SoakCounts& counts) {
    SimulatedPhone phone(scenario);
    NightWatch watch(phone, scenario);
    monitorObserver = &watch;
    try {
        phone.launch();
        phone.playToTheEnd();
    } catch (const std::exception& error) {
        return Breach{playedToTheEnd, phone.now(), error.what()};
    }
    watch.endNight();
    count(watch, scenario, counts);
    return watch.breach();
}

void limitTime(unsigned seconds) {
    alarm(seconds);
}

std::optional<Breach> playApart(const Scenario& scenario) {
    const auto [text, end] = answerOfChild([&] {
        limitTime();
        SoakCounts counts;
        return textOf(playWatched(scenario, counts));
    });
    if (end)
        return Breach{playedToTheEnd, scenario.start, *end};
    return breachOf(text);
}

} // namespace noctara
