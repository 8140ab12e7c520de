#include "phones/model/applications_model.h"

#include <stdexcept>

namespace noctara {

ApplicationsModel::Installed::Installed(ApplicationsModel& onPhone,
                                        const Scenario::Application& application) :
    owner(onPhone),
    identifier(application.identifier),
    name(application.name),
    running(application.running),
    hasIcon(application.icon) {}

bool ApplicationsModel::Installed::hasProcess() {
    return owner.recorder.answer(Operation::process, {identifier}, running);
}

void ApplicationsModel::Installed::activate() {
    owner.recorder.call(Operation::activate, {identifier});
    owner.inFront = this;
}

void ApplicationsModel::Installed::resumeToQuit() {
    owner.recorder.call(Operation::resumeToQuit, {identifier});
}

void ApplicationsModel::Installed::kill() {
    owner.recorder.call(Operation::kill, {identifier});
    running = false;
    if (owner.inFront == this)
        owner.inFront = nullptr;
}

void ApplicationsModel::Installed::launch() {
    owner.recorder.call(Operation::launch, {identifier});
    running = true;
    owner.inFront = this;
}

ApplicationsModel::ApplicationsModel(const Scenario& scenario, const Recorder& calls) :
    recorder(calls),
    homeScreen(*this, {"com.apple.springboard", "SpringBoard", true, false, false}) {
    for (const auto& application : scenario.applications) {
        install(application);
        if (application.front)
            inFront = &installed.back();
    }
}

ApplicationController* ApplicationsModel::sharedController(ClassRef controllerClass) {
    return controllerClass ? this : nullptr;
}

IconModel* ApplicationsModel::sharedIconModel(ClassRef modelClass) {
    return modelClass ? this : nullptr;
}

Application* ApplicationsModel::frontMostApplication() {
    recorder.answered(Operation::accessibilityFrontMostApplication, {},
                      inFront ? CallValue(inFront->identifier) : CallValue());
    return inFront;
}

void ApplicationsModel::allApplications(const std::function<void(Application&)>& visit) {
    std::vector<std::string> identifiers;
    for (const auto& application : installed)
        identifiers.push_back(application.identifier);
    recorder.answered(Operation::allApplications, {}, std::span<const std::string>(identifiers));

    const unsigned changesBefore = changes;
    for (std::size_t i = 0; i < identifiers.size(); ++i) {
        if (changes != changesBefore)
            throw std::logic_error("allApplications was changed while it was being walked");
        visit(installed[i]);
    }
}

Icon* ApplicationsModel::leafIconForIdentifier(const std::string& identifier) {
    return findIcon(Operation::leafIconForIdentifier, identifier);
}

Icon* ApplicationsModel::iconForDisplayIdentifier(const std::string& identifier) {
    return findIcon(Operation::iconForDisplayIdentifier, identifier);
}

void ApplicationsModel::install(const Scenario::Application& application) {
    installed.emplace_back(*this, application);
    ++changes;
}

bool ApplicationsModel::isRunning(const std::string& identifier) const {
    for (const auto& application : installed)
        if (application.identifier == identifier)
            return application.running;
    return false;
}

std::string ApplicationsModel::front() const {
    return inFront ? inFront->identifier : "";
}

Icon* ApplicationsModel::findIcon(Operation operation, const std::string& identifier) {
    Icon* icon = nullptr;
    for (auto& application : installed)
        if (application.identifier == identifier && application.hasIcon)
            icon = &application;
    recorder.answered(operation, {identifier}, icon != nullptr);
    return icon;
}

} // namespace noctara
