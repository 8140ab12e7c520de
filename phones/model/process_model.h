/// The process that the library is loaded into on the simulated phone: classes whose methods can be
/// hooked, notifications, the system log and the short sounds.
#pragma once

#include "phones/model/recorder.h"
#include "phones/model/scenario.h"
#include "platform/host_process.h"
#include "platform/notifications.h"
#include "platform/system_log.h"
#include "platform/system_sounds.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace noctara {

class ProcessModel final : public HostProcess,
                           public Notifications,
                           public SystemLog,
                           public SystemSounds {
public:
    ProcessModel(const Scenario& scenario, const Recorder& calls);

    std::string bundleIdentifier() override;
    ClassRef findClass(const char* name) override;
    void hookMessage(ClassRef hooked, const char* selector, Implementation replacement,
                     Implementation& previous) override;

    int registerOnMainQueue(const char* name, std::function<void()> handler) override;
    void post(const char* name) override;
    void postInProcess(const char* name, const Dictionary& userInfo) override;

    void write(const std::string& text) override;

    bool create(const std::string& path, SoundID& id) override;
    void play(SoundID id) override;
    void dispose(SoundID id) override;

    /// Send the messages of these names to SpringBoard. The current implementations receive them,
    /// which are the hooks once these are installed.
    void applicationDidFinishLaunching();
    void acPowerChanged(ObjectRef controller);

    /// Delivers a system-wide notification to the handlers of this process.
    void deliver(const std::string& name);

    bool hasClass(std::string_view name) const { return classes.contains(name); }

    /// Removes a class, as on a system that lacks it.
    void removeClass(const std::string& name) { classes.erase(name); }

    /// How often SpringBoard's original implementations have run.
    int launches = 0;
    int powerChanges = 0;

private:
    struct Class {
        std::string name;
        std::map<std::string, Implementation, std::less<>> methods;
    };

    /// Null if there is no such class or method.
    Implementation method(std::string_view className, std::string_view selector) const;

    static void ownDidFinishLaunching(ObjectRef self, SelectorRef, ObjectRef);
    static void ownACPowerChanged(ObjectRef, SelectorRef);

    const Recorder& recorder;
    std::string bundle;
    bool soundsAreInstalled;
    SoundID lastSound = 0;
    std::map<std::string, Class, std::less<>> classes;
    std::vector<std::pair<std::string, std::function<void()>>> handlers;
    static ProcessModel* current; ///< The process that the static implementations belong to.
};

} // namespace noctara
