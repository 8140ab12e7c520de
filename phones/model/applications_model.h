/// The installed applications and the home screen of the simulated phone.
#pragma once

#include "phones/model/recorder.h"
#include "phones/model/scenario.h"
#include "platform/applications.h"

#include <deque>
#include <optional>
#include <string>

namespace noctara {

class ApplicationsModel final : public Applications,
                                public ApplicationController,
                                public IconModel {
public:
    ApplicationsModel(const Scenario& scenario, const Recorder& calls);

    ApplicationController* sharedController(ClassRef controllerClass) override;
    IconModel* sharedIconModel(ClassRef modelClass) override;
    bool respondsToFrontMostApplication() override { return hasFrontMostQuery; }
    Application* frontMostApplication() override;

    void allApplications(const std::function<void(Application&)>& visit) override;
    Application* springBoard() override { return hasHomeScreenObject ? &homeScreen : nullptr; }

    bool respondsToLeafIconForIdentifier() override { return hasLeafIcons; }
    Icon* leafIconForIdentifier(const std::string& identifier) override;
    Icon* iconForDisplayIdentifier(const std::string& identifier) override;

    /// Installs one more application. A call of allApplications that is in progress then throws.
    void install(const Scenario::Application& application);

    bool isRunning(const std::string& identifier) const;

    /// The identifier of the application in front. Empty on the home screen.
    std::string front() const;

    // What the phone's version of the system responds to.
    bool hasFrontMostQuery = true;
    bool hasHomeScreenObject = true;
    bool hasLeafIcons = true;

private:
    class Installed final : public Application, public Icon {
    public:
        Installed(ApplicationsModel& onPhone, const Scenario::Application& application);

        std::optional<std::string> displayIdentifier() override { return identifier; }
        std::optional<std::string> displayName() override { return name; }
        bool hasProcess() override;
        void activate() override;
        void resumeToQuit() override;
        void kill() override;
        void launch() override;

        ApplicationsModel& owner;
        std::string identifier;
        std::string name;
        bool running;
        bool hasIcon;
    };

    Icon* findIcon(Operation operation, const std::string& identifier);

    const Recorder& recorder;
    std::deque<Installed> installed;
    Installed homeScreen;
    Installed* inFront = nullptr;
    unsigned changes = 0;
};

} // namespace noctara
