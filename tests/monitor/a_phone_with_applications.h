/// A phone with a few applications, for the tests of launching and quitting them.
#pragma once

#include "tests/a_night.h"

#include <stdexcept>

namespace noctara {

inline const std::string clockApp = "com.apple.mobiletimer";
inline const std::string recorderApp = "com.example.SleepRecorder";
inline const std::string mailApp = "com.apple.mobilemail";

class APhoneWithApplications : public AMonitor {
protected:
    APhoneWithApplications() {
        scenario.applications = {{mailApp, "Mail", false, true, false},
                                 {clockApp, "Clock", false, true, false},
                                 {recorderApp, "Sleep Recorder", false, true, false}};
    }

    Scenario::Application& installed(const std::string& identifier) {
        for (auto& application : scenario.applications)
            if (application.identifier == identifier)
                return application;
        throw std::invalid_argument(identifier);
    }

    void list(std::vector<std::string> identifiers) {
        make();
        own->applicationsToStart = std::move(identifiers);
        calls.clear();
    }

    /// The object that represents an application on the phone.
    Application* object(const std::string& identifier) {
        Application* found = nullptr;
        phone().applications.allApplications([&](Application& application) {
            if (application.displayIdentifier() == identifier)
                found = &application;
        });
        calls.clear();
        return found;
    }

    std::vector<std::string> actions() const {
        return calls.of({"activate", "launch", "resumeToQuit", "kill"});
    }
};

} // namespace noctara
