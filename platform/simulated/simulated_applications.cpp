#include "platform/simulated/simulated_applications.h"

#include <stdexcept>

namespace noctara {

SimulatedApplications::Installed::Installed(SimulatedApplications& onPhone,
                                            const Scenario::Application& application) :
    owner(onPhone),
    identifier(application.identifier),
    name(application.name),
    running(application.running),
    hasIcon(application.icon) {}

bool SimulatedApplications::Installed::hasProcess() {
    return owner.recorder.answer("process", {identifier}, running);
}

void SimulatedApplications::Installed::activate() {
    owner.recorder.call("activate", {identifier});
    owner.inFront = this;
}

void SimulatedApplications::Installed::resumeToQuit() {
    owner.recorder.call("resumeToQuit", {identifier});
}

void SimulatedApplications::Installed::kill() {
    owner.recorder.call("kill", {identifier});
    running = false;
    if (owner.inFront == this)
        owner.inFront = nullptr;
}

void SimulatedApplications::Installed::launch() {
    owner.recorder.call("launch", {identifier});
    running = true;
    owner.inFront = this;
}

SimulatedApplications::SimulatedApplications(const Scenario& scenario, const Recorder& calls) :
    recorder(calls),
    homeScreen(*this, {"com.apple.springboard", "SpringBoard", true, false, false}) {
    for (const auto& application : scenario.applications) {
        install(application);
        if (application.front)
            inFront = &installed.back();
    }
}

ApplicationController* SimulatedApplications::sharedController(ClassRef controllerClass) {
    return controllerClass ? this : nullptr;
}

IconModel* SimulatedApplications::sharedIconModel(ClassRef modelClass) {
    return modelClass ? this : nullptr;
}

Application* SimulatedApplications::frontMostApplication() {
    recorder.answered("_accessibilityFrontMostApplication", {},
                      inFront ? CallValue(inFront->identifier) : CallValue());
    return inFront;
}

void SimulatedApplications::allApplications(const std::function<void(Application&)>& visit) {
    std::vector<std::string> identifiers;
    for (const auto& application : installed)
        identifiers.push_back(application.identifier);
    recorder.answered("allApplications", {}, std::span<const std::string>(identifiers));

    const unsigned changesBefore = changes;
    for (std::size_t i = 0; i < identifiers.size(); ++i) {
        if (changes != changesBefore)
            throw std::logic_error("allApplications was changed while it was being walked");
        visit(installed[i]);
    }
}

Icon* SimulatedApplications::leafIconForIdentifier(const std::string& identifier) {
    return findIcon("leafIconForIdentifier:", identifier);
}

Icon* SimulatedApplications::iconForDisplayIdentifier(const std::string& identifier) {
    return findIcon("iconForDisplayIdentifier:", identifier);
}

void SimulatedApplications::install(const Scenario::Application& application) {
    installed.emplace_back(*this, application);
    ++changes;
}

bool SimulatedApplications::isRunning(const std::string& identifier) const {
    for (const auto& application : installed)
        if (application.identifier == identifier)
            return application.running;
    return false;
}

std::string SimulatedApplications::front() const {
    return inFront ? inFront->identifier : "";
}

Icon* SimulatedApplications::findIcon(std::string_view operation, const std::string& identifier) {
    Icon* icon = nullptr;
    for (auto& application : installed)
        if (application.identifier == identifier && application.hasIcon)
            icon = &application;
    recorder.answered(operation, {identifier}, icon != nullptr);
    return icon;
}

} // namespace noctara
