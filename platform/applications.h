/// The applications on the phone, as the home screen manages them. Call these on the main thread.
#pragma once

#include "platform/host_process.h"

#include <functional>
#include <optional>
#include <string>

namespace noctara {

/// An installed application, or the home screen itself. Owned by the host. Two applications are
/// equal if they are the same object.
class Application {
public:
    virtual ~Application() = default;

    /// Absent if the host's object has none (nil).
    virtual std::optional<std::string> displayIdentifier() = 0;

    /// The name that the user sees. Absent if the host's object has none (nil).
    virtual std::optional<std::string> displayName() = 0;

    /// Whether the application is running (`process`).
    virtual bool hasProcess() = 0;

    /// Brings the running application to the front.
    virtual void activate() = 0;

    /// Asks the application to quit. The caller then calls `kill`.
    virtual void resumeToQuit() = 0;

    /// Ends the application's process, if there is one.
    virtual void kill() = 0;
};

/// `SBApplicationController`.
class ApplicationController {
public:
    virtual ~ApplicationController() = default;

    /// Visits the installed applications in the controller's order. Throws if the list changes
    /// during the visits.
    virtual void allApplications(const std::function<void(Application&)>& visit) = 0;

    /// The object of the home screen; null if the controller does not respond to
    /// `springBoard`.
    virtual Application* springBoard() = 0;
};

/// An icon on the home screen. Owned by the host.
class Icon {
public:
    virtual ~Icon() = default;

    /// Launches the application as a tap on the icon would.
    virtual void launch() = 0;
};

/// `SBIconModel`. The icon of an identifier is null if there is none.
class IconModel {
public:
    virtual ~IconModel() = default;

    virtual bool respondsToLeafIconForIdentifier() = 0;
    virtual Icon* leafIconForIdentifier(const std::string& identifier) = 0;

    /// The older method, for a model that does not respond to the one above.
    virtual Icon* iconForDisplayIdentifier(const std::string& identifier) = 0;
};

class Applications {
public:
    virtual ~Applications() = default;

    /// `sharedInstance` of the classes found by the names "SBApplicationController" and
    /// "SBIconModel". Null for a null class.
    virtual ApplicationController* sharedController(ClassRef controllerClass) = 0;
    virtual IconModel* sharedIconModel(ClassRef modelClass) = 0;

    /// Whether the shared application object responds to `_accessibilityFrontMostApplication`.
    virtual bool respondsToFrontMostApplication() = 0;

    /// The application in front; null on the home screen.
    virtual Application* frontMostApplication() = 0;
};

} // namespace noctara
