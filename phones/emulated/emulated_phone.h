/// A phone whose SpringBoard runs the phone's own library, instruction by instruction. Behind the
/// functions and classes that the library imports stands the same model as behind the simulated
/// phone.
///
/// Only one thread runs at a time. The monitor runs until it sleeps; everything that is due until
/// the end of its sleep then runs as work of the main thread.
#pragma once

#include "phones/emulated/mach_o.h"
#include "phones/emulated/memory.h"
#include "phones/model/phone_model.h"

#include <functional>
#include <memory>

namespace noctara::emulated {

class Process;

class EmulatedPhone final : public PhoneModel {
public:
    /// Loads the library, as the loader of the phone does. Throws BadLibrary. There is one phone at
    /// a time.
    EmulatedPhone(const Scenario& scenario, std::unique_ptr<FileStore> files,
                  const Loading& loading);
    ~EmulatedPhone() override;

    /// Runs the library's initialisers, SpringBoard to the end of its launch, and the scenario to
    /// its end. What the library does wrong is then in the findings of the process. False if the
    /// process did not survive it. Throws MonitorSpins.
    bool playNight();

    Process& emulatedProcess() { return *theProcess; }

    // For the functions that stand in for the phone's own.

    Date now() const { return clock.wall(); }
    std::int64_t time();
    void sleep(unsigned seconds);
    void startMonitor(const std::string& name, std::function<void()> body);
    void performOnMainThread(const std::string& selector, const std::function<void()>& work);
    PowerConnection registerForSystemPower(Address refcon, Address callback,
                                           NotificationPortRef& port);
    ServerConnectionRef createServerConnection(Address callback);

    const double coreFoundationVersion;

private:
    /// The night ends while the monitor sleeps.
    struct NightIsOver {};

    void launch();
    void playToTheEnd();
    void sendACPowerChanged() override;
    void stopMonitor() override;

    static void deliverPowerMessage(void*, std::uint32_t service, std::uint32_t type,
                                    void* argument);
    static void deliverServerAnswer();

    static EmulatedPhone* current; ///< The functions of the system have no context.
    std::function<void()> monitorBody;
    Address powerRefcon = 0;
    Address powerCallback = 0;
    Address serverCallback = 0;
    std::unique_ptr<Process> theProcess;
};

} // namespace noctara::emulated
