/// The applications that are launched when the sleep state begins and quit when it ends.
#include "platform/applications.h"
#include "monitor/noctara_thread.h"

#include <stdexcept>

namespace noctara {

void NoctaraThread::startStopApplications(bool start) {
    const std::lock_guard guard(lock);
    auto* controller = platform.applications->sharedController(
        platform.process->findClass("SBApplicationController"));
    if (!controller)
        return;
    controller->allApplications([&](Application& application) {
        if (!isToBeStarted(application))
            return;
        if (_DEBUG_)
            debugLog(start ? "Noctara Launching app displayName=%s"
                           : "Noctara Killing app displayName=%s",
                     application.displayName().value_or("(null)").c_str());
        if (!start) {
            application.resumeToQuit();
            application.kill();
        } else if (application.hasProcess()) {
            application.activate();
        } else {
            activateApplication(&application);
        }
    });
}

/// Throws if the list changes during the loop; the recursive lock allows its own thread to do that.
bool NoctaraThread::isToBeStarted(Application& application) {
    const unsigned changesBefore = applicationListChanges;
    for (std::size_t i = 0; i < applicationsToStart.size(); ++i) {
        const auto identifier = application.displayIdentifier();
        if (applicationListChanges != changesBefore)
            throw std::logic_error("applicationsToStart was changed while it was being walked");
        if (applicationsToStart[i] == identifier)
            return true;
    }
    return false;
}

bool NoctaraThread::activateApplication(Application* application) {
    auto* controller = platform.applications->sharedController(
        platform.process->findClass("SBApplicationController"));
    Application* const homeScreen = controller ? controller->springBoard() : nullptr;
    Application* const target = application ? application : homeScreen;
    Application* front = topApplication();
    if (!front)
        front = homeScreen;
    if (front == target)
        return false;

    auto* icons =
        platform.applications->sharedIconModel(platform.process->findClass("SBIconModel"));
    if (icons && target) {
        const std::string identifier = target->displayIdentifier().value_or("");
        Icon* const icon = icons->respondsToLeafIconForIdentifier()
                               ? icons->leafIconForIdentifier(identifier)
                               : icons->iconForDisplayIdentifier(identifier);
        if (icon)
            icon->launch();
    }
    return true;
}

Application* NoctaraThread::topApplication() {
    return platform.applications->respondsToFrontMostApplication()
               ? platform.applications->frontMostApplication()
               : nullptr;
}

ObjectRef NoctaraThread::activateApp(ObjectRef object) {
    return object;
}

} // namespace noctara
