#include "live/live_night.h"

#include "host/host.h"

#include <algorithm>
#include <cmath>

namespace noctara {

namespace {

/// More than the tallest terminal shows.
constexpr std::size_t mostStoryLines = 500;

constexpr int secondsWithoutReading = 3600;

} // namespace

LiveNight::LiveNight(const Scenario& scenario, SimulatedPhone& simulatedPhone,
                     NightReport& nightReport, std::ostringstream& toldStory) :
    night(scenario),
    phone(simulatedPhone),
    report(nightReport),
    told(toldStory),
    lanes(scenario, simulatedPhone) {
    phone.observe(lanes);
    monitorObserver = this;
}

void LiveNight::decided(const Decision& decision) {
    report.decided(decision);
    lanes.decided(decision);
}

void LiveNight::playTo(double seconds) {
    const double to = std::min(std::floor(seconds), night.end.secondsSince1970);
    if (to > now())
        phone.playUntil({to});
}

bool LiveNight::playReading() {
    const int before = phone.motion.readings;
    for (int i = 0; i < secondsWithoutReading && phone.motion.readings == before; ++i)
        playTo(now() + 1);
    return phone.motion.readings != before;
}

void LiveNight::act(const Event& event) {
    // The scenario's events of this instant come first, also at the start.
    phone.playUntil({now()});
    // A scenario's event comes before what the power management does at the same instant.
    while (lanes.lastPowerMessage() == now() && !hasEnded())
        playTo(now() + 1);
    if (hasEnded())
        return;
    acted.push_back({{now()}, event});
    phone.happens(event);
}

void LiveNight::finish() {
    if (hasEnded())
        phone.playToTheEnd();
    else
        phone.endHere();
}

Scenario LiveNight::asPlayed() const {
    Scenario scenario = night;
    scenario.end = {now()};
    scenario.events.insert(scenario.events.end(), acted.begin(), acted.end());
    std::stable_sort(scenario.events.begin(), scenario.events.end(),
                     [](const auto& one, const auto& other) { return one.at < other.at; });
    return scenario;
}

NightPicture LiveNight::picture() {
    takeStory();
    return {phone.timeZone(),
            night.start.secondsSince1970,
            now(),
            night.end.secondsSince1970,
            phone.clock.wall(),
            lanes.lanes(),
            story};
}

void LiveNight::takeStory() {
    std::istringstream lines(told.str());
    told.str("");
    for (std::string line; std::getline(lines, line);)
        if (!line.empty())
            story.push_back(line);
    while (story.size() > mostStoryLines)
        story.pop_front();
}

} // namespace noctara
