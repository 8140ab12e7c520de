/// A small phone with real threads and a real clock: a main thread with a queue of work, a monitor
/// thread, and waits of a thousandth of the requested time. Shared data of the phone is guarded by
/// a mutex, so that any race that is reported is a race of the monitor.
#pragma once

#include "platform/applications.h"
#include "platform/bluetooth.h"
#include "platform/calendar.h"
#include "platform/capabilities.h"
#include "platform/cellular.h"
#include "platform/charger.h"
#include "platform/clock.h"
#include "platform/device.h"
#include "platform/files.h"
#include "platform/location.h"
#include "platform/motion.h"
#include "platform/notifications.h"
#include "platform/platform.h"
#include "platform/preferences.h"
#include "platform/system_log.h"
#include "platform/system_power.h"
#include "platform/system_sounds.h"
#include "platform/telephony.h"
#include "platform/threads.h"
#include "platform/wake_scheduler.h"
#include "platform/wifi.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace noctara {

/// One application, which always runs.
class LiveApplications final : public Applications,
                               public ApplicationController,
                               private Application {
public:
    ApplicationController* sharedController(ClassRef) override { return this; }
    IconModel* sharedIconModel(ClassRef) override { return nullptr; }
    bool respondsToFrontMostApplication() override { return false; }
    Application* frontMostApplication() override { return nullptr; }
    void allApplications(const std::function<void(Application&)>& visit) override { visit(*this); }
    Application* springBoard() override { return nullptr; }

    std::atomic<int> launches = 0;

private:
    std::optional<std::string> displayIdentifier() override { return "com.example.alarm"; }
    std::optional<std::string> displayName() override { return "Alarm"; }
    bool hasProcess() override { return true; }
    void activate() override { ++launches; }
    void resumeToQuit() override {}
    void kill() override {}
};

class LivePhone final : public SystemLog,
                        public HostProcess,
                        public Threads,
                        public Clock,
                        public Calendar,
                        public Files,
                        public Notifications,
                        public SystemPower,
                        public WakeScheduler,
                        public Charger,
                        public Motion,
                        public SystemSounds,
                        public Telephony,
                        public TelephonyManager,
                        public WiFi,
                        public BluetoothManager,
                        public LocationManager,
                        public CellularRadio,
                        public Preferences,
                        public Device,
                        public DynamicLibraries,
                        public CapabilityFunctions {
public:
    using Lock = std::lock_guard<std::mutex>;

    Platform platform() {
        return {
            .log = this,
            .process = this,
            .threads = this,
            .clock = this,
            .calendar = this,
            .files = this,
            .notifications = this,
            .power = this,
            .wakes = this,
            .charger = this,
            .motion = this,
            .sounds = this,
            .applications = &applications,
            .telephony = this,
            .wifi = this,
            .bluetooth = this,
            .location = this,
            .cellular = this,
            .preferences = this,
            .device = this,
            .libraries = this,
            .capabilities = this,
        };
    }

    // Called by the test. The thread that calls `workUntil` is the main thread.

    /// Runs the main thread's work until `done` returns true; calls `onMain` after each piece of
    /// work.
    template <typename Done, typename OnMain>
    void workUntil(Done done, OnMain onMain) {
        while (!done()) {
            std::function<void()> work;
            {
                std::unique_lock lock(mutex);
                queueChanged.wait_for(lock, std::chrono::microseconds(200),
                                      [this] { return !queue.empty(); });
                if (!queue.empty()) {
                    work = std::move(queue.front());
                    queue.pop_front();
                }
            }
            if (work)
                work();
            onMain();
        }
    }

    /// Writes the settings file and announces the change on the main thread, like the settings
    /// screen.
    void changeSettings(const Dictionary& settings) {
        changeSettingsQuietly(settings);
        handler();
    }
    void changeSettingsQuietly(const Dictionary& settings) {
        const Lock lock(mutex);
        for (const auto& [key, value] : settings)
            settingsFile.set(key, value);
    }

    void powerMessage(std::uint32_t type) {
        callback(nullptr, 0, type, reinterpret_cast<void*>(7));
    }

    void lieDown(bool down) { liesDown = down; }
    bool monitorHasEnded() const { return ended; }
    void joinMonitor() {
        if (monitorThread.joinable())
            monitorThread.join();
    }

    std::atomic<bool> onCharger = false;
    std::atomic<bool> airplane = false;
    std::atomic<int> transitions = 0;
    std::atomic<int> readings = 0;
    std::atomic<int> allowed = 0;
    std::atomic<int> cancelled = 0;
    LiveApplications applications;

    // Called by the monitor.

    void write(const std::string& text) override {
        const Lock lock(mutex);
        lastLine = text;
    }

    std::string bundleIdentifier() override { return "com.apple.springboard"; }
    ClassRef findClass(const char*) override { return this; }
    void hookMessage(ClassRef, const char*, Implementation, Implementation&) override {}

    std::unique_ptr<Thread> start(const char*, std::function<void()> body) override {
        class Started final : public Thread {};
        monitorThread = std::thread([this, run = std::move(body)] {
            run();
            ended = true;
        });
        return std::make_unique<Started>();
    }
    bool isMainThread() override { return std::this_thread::get_id() == mainThread; }
    void performOnMainThread(const char*, const std::function<void()>& work) override {
        std::mutex doneMutex;
        std::condition_variable doneChanged;
        bool done = false;
        {
            const Lock lock(mutex);
            queue.emplace_back([&] {
                work();
                const std::lock_guard doneLock(doneMutex);
                done = true;
                doneChanged.notify_one();
            });
            queueChanged.notify_one();
        }
        std::unique_lock lock(doneMutex);
        doneChanged.wait(lock, [&] { return done; });
    }

    std::int64_t time() override { return clockSeconds(); }
    Date now() override { return {static_cast<double>(clockSeconds())}; }
    void sleep(unsigned seconds) override {
        std::this_thread::sleep_for(std::chrono::milliseconds(seconds));
        waited += seconds;
    }

    DateComponents components(Date) override { return {2014, 3, 1, 23, 0, 0}; }
    Date date(const DateComponents& parts) override {
        return {static_cast<double>(clockSeconds() + 3600 * (parts.hour - 23))};
    }

    bool exists(const std::string&) override { return true; }
    std::optional<Dictionary> readDictionary(const std::string&) override {
        const Lock lock(mutex);
        return settingsFile;
    }
    bool writeDictionary(const std::string&, const Dictionary& written) override {
        const Lock lock(mutex);
        settingsFile = written;
        return true;
    }
    std::shared_ptr<const PropertyList> parse(const std::string&, std::string&) override {
        const Lock lock(mutex);
        return std::make_shared<const PropertyList>(Dictionary{{"wake", wakes}});
    }

    int registerOnMainQueue(const char*, std::function<void()> onNotification) override {
        handler = std::move(onNotification);
        return 1;
    }
    void post(const char*) override {}
    void postInProcess(const char*, const Dictionary&) override {}

    PowerConnection registerForSystemPower(PowerCallback onMessage,
                                           NotificationPortRef& port) override {
        callback = onMessage;
        port = this;
        return 1;
    }
    RunLoopRef currentRunLoop() override { return this; }
    void addSource(RunLoopRef, NotificationPortRef) override {}
    void allowPowerChange(PowerConnection, std::intptr_t) override { ++allowed; }
    void cancelPowerChange(PowerConnection, std::intptr_t) override { ++cancelled; }

    void schedule(Date date, const std::string& identifier) override {
        const Lock lock(mutex);
        wakes = {Dictionary{{"scheduledby", identifier}, {"time", date}}};
    }
    void cancel(Date, const std::string&) override {
        const Lock lock(mutex);
        wakes.clear();
    }

    ObjectRef sharedController(ClassRef) override { return this; }
    bool isOnAC(ObjectRef) override { return onCharger; }

    std::unique_ptr<MotionManager> makeMotionManager() override {
        class Sensor final : public MotionManager {
        public:
            explicit Sensor(LivePhone& onPhone) : phone(onPhone) {}
            void startAccelerometerUpdates() override {}
            void setAccelerometerUpdateInterval(double) override {}
            std::optional<Acceleration> deviceMotion() override { return std::nullopt; }
            std::optional<Acceleration> accelerometerData() override {
                return Acceleration{0, 0, phone.liesDown ? 1.0 : -1.0};
            }
            void stopAccelerometerUpdates() override { ++phone.readings; }

        private:
            LivePhone& phone;
        };
        return std::make_unique<Sensor>(*this);
    }

    bool create(const std::string&, SoundID& id) override {
        id = 1;
        return true;
    }
    void play(SoundID) override {}
    void dispose(SoundID) override {}

    TelephonyManager* sharedTelephonyManager(ClassRef) override { return this; }
    bool isInAirplaneMode() override { return airplane; }
    void setIsInAirplaneMode(bool on) override { airplane = on; }
    void updateAirplaneMode() override { ++transitions; }
    bool inCall() override { return false; }
    bool outgoingCallExists() override { return false; }
    bool incomingCallExists() override { return false; }
    bool activeCallExists() override { return false; }
    bool isNetworkTethering() override { return false; }

    WiFiManager* sharedInstance(ClassRef) override { return nullptr; }
    bool enabled() override { return true; }
    bool connected() override { return false; }
    void setPowered(bool) override {}
    void setEnabled(bool) override {}
    bool locationServicesEnabled() override { return true; }
    void setLocationServicesEnabled(bool) override {}
    bool dataPlanIsEnabled() override { return true; }
    bool registrationDataIsEnabled() override { return true; }
    void setDataPlanIsEnabled(bool) override {}
    DataRate currentMaxAllowedDataRate() override { return DataRate::kCTRegistrationDataRate3G; }
    bool setMaxAllowedDataRate(DataRate) override { return true; }
    ServerConnectionRef createServerConnection(ServerConnectionCallback) override { return this; }
    void releaseConnection(ServerConnectionRef) override {}
    std::vector<DataRate> supportedDataRates() override {
        return {DataRate::kCTRegistrationDataRate2G, DataRate::kCTRegistrationDataRate3G};
    }
    void setAppValue(const char*, const PropertyList&, const char*) override {}
    void appSynchronize(const char*) override {}

    std::string machine() override { return "iPhone4,1"; }
    std::int32_t userInterfaceIdiom() override { return 0; }
    double coreFoundationVersionNumber() override { return 793; }
    LibraryRef open(const char*) override { return nullptr; }
    FunctionRef find(LibraryRef, const char*) override { return nullptr; }
    void close(LibraryRef) override {}
    int linkedGSSystemHasCapability(const std::string&) override { return 1; }
    int callGSSystemHasCapability(FunctionRef, const std::string&) override { return 0; }
    std::optional<PropertyList> callGSSystemCopyCapability(FunctionRef,
                                                           const std::string&) override {
        return std::nullopt;
    }
    int callMGGetBoolAnswer(FunctionRef, const std::string&) override { return 0; }

private:
    std::int64_t clockSeconds() const { return 1393713000 + waited; }

    const std::thread::id mainThread = std::this_thread::get_id();
    std::mutex mutex;
    std::condition_variable queueChanged;
    std::deque<std::function<void()>> queue;
    std::string lastLine;
    Dictionary settingsFile;
    Array wakes;
    std::function<void()> handler;
    PowerCallback callback = nullptr;
    std::atomic<bool> liesDown = false;
    std::atomic<std::int64_t> waited = 0;
    std::atomic<bool> ended = false;
    std::thread monitorThread;
};

} // namespace noctara
