/// The process in which a trace is replayed: SpringBoard's hooked methods, threads, time,
/// notifications and power messages.
#pragma once

#include "phones/model/event.h"
#include "phones/model/local_time.h"
#include "phones/replay/answers.h"
#include "platform/calendar.h"
#include "platform/clock.h"
#include "platform/host_process.h"
#include "platform/notifications.h"
#include "platform/system_log.h"
#include "platform/system_power.h"
#include "platform/threads.h"

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>

namespace noctara {

class ReplayedProcess final : public SystemLog,
                              public HostProcess,
                              public Threads,
                              public Clock,
                              public Calendar,
                              public Notifications,
                              public SystemPower {
public:
    ReplayedProcess(const std::string& timeZone, const Answers& answered) :
        zone(timeZone), answers(answered) {}

    // Call the library from outside. They do nothing if it has not hooked the method or registered.
    void applicationDidFinishLaunching();
    void acPowerChanged();
    void deliverNotification(const std::string& name);
    void deliverPowerMessage(const PowerMessage& message);

    void write(const std::string& text) override;

    std::string bundleIdentifier() override;
    ClassRef findClass(const char* name) override;
    void hookMessage(ClassRef hooked, const char* selector, Implementation replacement,
                     Implementation& previous) override;

    std::unique_ptr<Thread> start(const char* name, std::function<void()> body) override;
    bool isMainThread() override { return answers.player.isMainThread(); }
    void performOnMainThread(const char* selector, const std::function<void()>& work) override;

    std::int64_t time() override;
    Date now() override;
    void sleep(unsigned seconds) override;

    DateComponents components(Date date) override { return zone.components(date); }
    Date date(const DateComponents& components) override { return zone.date(components); }

    int registerOnMainQueue(const char* name, std::function<void()> handler) override;
    void post(const char* name) override;
    void postInProcess(const char* name, const Dictionary& userInfo) override;

    PowerConnection registerForSystemPower(PowerCallback callback,
                                           NotificationPortRef& port) override;
    RunLoopRef currentRunLoop() override { return this; }
    void addSource(RunLoopRef runLoop, NotificationPortRef port) override;
    void allowPowerChange(PowerConnection connection, std::intptr_t notification) override;
    void cancelPowerChange(PowerConnection connection, std::intptr_t notification) override;

private:
    const TimeZone zone;
    const Answers& answers;
    std::set<std::string> classes;               ///< A class is represented by its name here.
    std::map<std::string, Implementation> hooks; ///< By selector.
    std::multimap<std::string, std::function<void()>> handlers;
    PowerCallback powerCallback = nullptr;
    bool hasPowerSource = false;
};

} // namespace noctara
