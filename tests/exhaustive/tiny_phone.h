/// The smallest phone on which the monitor runs. It answers at once, and passes on what the main
/// loop does to a watcher.
#pragma once

#include "platform/applications.h"
#include "platform/calendar.h"
#include "platform/cellular.h"
#include "platform/charger.h"
#include "platform/clock.h"
#include "platform/device.h"
#include "platform/files.h"
#include "platform/motion.h"
#include "platform/notifications.h"
#include "platform/platform.h"
#include "platform/system_log.h"
#include "platform/system_sounds.h"
#include "platform/telephony.h"
#include "platform/threads.h"
#include "platform/wake_scheduler.h"
#include "tests/exhaustive/rules.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace noctara::exhaustive {

/// Told of what the monitor does. May throw to end the monitor.
class Watcher {
public:
    virtual ~Watcher() = default;

    virtual void does(Act act) = 0;
    /// The monitor looks at the clock, or pauses for a second, but not for a reading.
    virtual void looksAtTheClock() = 0;
    virtual void pauses() = 0;
    /// The second of a reading passes.
    virtual void readingTakesASecond() = 0;
    /// Whether the phone lies in the posture that the settings name.
    virtual bool lies() = 0;
    /// Whether the state to which the monitor switches is quiet.
    virtual bool switchesToQuiet() = 0;
};

/// A phone without applications.
class NoApplications final : public Applications, public ApplicationController {
public:
    ApplicationController* sharedController(ClassRef) override { return this; }
    IconModel* sharedIconModel(ClassRef) override { return nullptr; }
    bool respondsToFrontMostApplication() override { return false; }
    Application* frontMostApplication() override { return nullptr; }
    void allApplications(const std::function<void(Application&)>&) override {}
    Application* springBoard() override { return nullptr; }
};

class TinyPhone final : public SystemLog,
                        public HostProcess,
                        public Threads,
                        public Clock,
                        public Calendar,
                        public Files,
                        public Notifications,
                        public WakeScheduler,
                        public Charger,
                        public Motion,
                        public SystemSounds,
                        public Telephony,
                        public TelephonyManager,
                        public CellularRadio,
                        public Device {
public:
    explicit TinyPhone(Watcher& watcherOfAll) : watcher(watcherOfAll) {}

    Platform platform() {
        Platform services;
        services.log = this;
        services.process = this;
        services.threads = this;
        services.clock = this;
        services.calendar = this;
        services.files = this;
        services.notifications = this;
        services.wakes = this;
        services.charger = this;
        services.motion = this;
        services.sounds = this;
        services.applications = &applications;
        services.telephony = this;
        services.cellular = this;
        services.device = this;
        return services;
    }

    /// The settings screen writes the file and announces the change.
    void write(const Dictionary& changed) {
        settings = changed;
        settingsChanged();
    }

    Dictionary settings;
    bool screenDownWanted = true;
    bool insideWindow = true;
    bool onCharger = false;
    bool airplaneMode = false;
    std::vector<SoundID> disposed;

    void write(const std::string&) override {}

    ClassRef findClass(const char*) override { return this; }
    std::string bundleIdentifier() override { return {}; }
    void hookMessage(ClassRef, const char*, Implementation, Implementation&) override {}

    std::unique_ptr<Thread> start(const char*, std::function<void()>) override { return nullptr; }
    bool isMainThread() override { return onMainThread; }
    void performOnMainThread(const char*, const std::function<void()>& work) override {
        onMainThread = true;
        work();
        onMainThread = false;
    }

    std::int64_t time() override {
        if (!reading)
            watcher.looksAtTheClock();
        return static_cast<std::int64_t>(clock);
    }
    Date now() override { return {clock}; }
    void sleep(unsigned seconds) override {
        for (; seconds > 0; --seconds) {
            clock += 1;
            reading ? watcher.readingTakesASecond() : watcher.pauses();
        }
    }

    DateComponents components(Date) override {
        watcher.does(Act::asksForTheTimeOfDay);
        return {2014, 3, 1, hour(), 30, 0};
    }
    Date date(const DateComponents& parts) override {
        return {clock + 3600 * (parts.hour - hour()) + 60 * (parts.minute - 30) + parts.second};
    }

    bool exists(const std::string&) override { return true; }
    std::optional<Dictionary> readDictionary(const std::string& path) override {
        if (path.ends_with("com.quorbit.Noctara.plist"))
            return settings;
        return Dictionary{{"AirplaneMode", airplaneMode}};
    }
    bool writeDictionary(const std::string&, const Dictionary&) override { return false; }
    std::shared_ptr<const PropertyList> parse(const std::string&, std::string&) override {
        static const auto empty = std::make_shared<const PropertyList>(Dictionary());
        return empty;
    }

    int registerOnMainQueue(const char*, std::function<void()> handler) override {
        settingsChanged = std::move(handler);
        return 1;
    }
    void post(const char* name) override {
        if (std::string_view(name) == "com.apple.radios")
            watcher.does(watcher.switchesToQuiet() ? Act::becomesQuiet : Act::comesBack);
    }
    void postInProcess(const char*, const Dictionary&) override {}

    void schedule(Date, const std::string&) override { watcher.does(Act::schedulesWakeUp); }
    void cancel(Date, const std::string&) override {}

    ObjectRef sharedController(ClassRef) override { return this; }
    bool isOnAC(ObjectRef) override { return onCharger; }

    std::unique_ptr<MotionManager> makeMotionManager() override {
        return std::make_unique<Accelerometer>(*this);
    }

    bool create(const std::string& path, SoundID& id) override {
        id = path.ends_with("airplanemode.mp3") ? warning : signal;
        return true;
    }
    void play(SoundID id) override {
        if (onMainThread)
            watcher.does(id == warning          ? Act::playsWarning
                         : id == vibrationSound ? Act::vibrates
                                                : Act::playsReturn);
    }
    void dispose(SoundID id) override { disposed.push_back(id); }
    static constexpr SoundID warning = 1;
    static constexpr SoundID signal = 2;

    TelephonyManager* sharedTelephonyManager(ClassRef) override { return this; }
    bool isInAirplaneMode() override {
        if (!onMainThread)
            watcher.does(Act::asksForAirplaneMode);
        return airplaneMode;
    }
    void setIsInAirplaneMode(bool on) override { airplaneModeSet = on; }
    void updateAirplaneMode() override { airplaneMode = airplaneModeSet; }
    bool inCall() override { return false; }
    bool outgoingCallExists() override { return false; }
    bool incomingCallExists() override { return false; }
    bool activeCallExists() override { return false; }
    bool isNetworkTethering() override { return false; }

    bool dataPlanIsEnabled() override { return true; }
    bool registrationDataIsEnabled() override { return true; }
    void setDataPlanIsEnabled(bool) override {}
    DataRate currentMaxAllowedDataRate() override { return DataRate::kCTRegistrationDataRate3G; }
    bool setMaxAllowedDataRate(DataRate) override { return true; }
    ServerConnectionRef createServerConnection(ServerConnectionCallback) override { return this; }
    void releaseConnection(ServerConnectionRef) override {}
    std::vector<DataRate> supportedDataRates() override { return {}; }

    std::string machine() override { return "iPhone4,1"; }
    std::int32_t userInterfaceIdiom() override { return 0; }
    double coreFoundationVersionNumber() override { return 793; }

private:
    class Accelerometer final : public MotionManager {
    public:
        explicit Accelerometer(TinyPhone& ofPhone) : phone(ofPhone) {}

        void startAccelerometerUpdates() override {
            phone.watcher.does(Act::reads);
            phone.reading = true;
        }
        void setAccelerometerUpdateInterval(double) override {}
        std::optional<Acceleration> deviceMotion() override { return std::nullopt; }
        std::optional<Acceleration> accelerometerData() override {
            return Acceleration{0, 0, phone.watcher.lies() == phone.screenDownWanted ? 1.0 : -1.0};
        }
        void stopAccelerometerUpdates() override { phone.reading = false; }

    private:
        TinyPhone& phone;
    };

    /// Inside and outside the default window, which is from 21 to 7.
    std::int32_t hour() const { return insideWindow ? 23 : 12; }

    Watcher& watcher;
    NoApplications applications;
    std::function<void()> settingsChanged;
    bool onMainThread = false;
    bool reading = false;
    bool airplaneModeSet = false;
    double clock = 1393713000;
};

} // namespace noctara::exhaustive
