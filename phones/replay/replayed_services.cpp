#include "phones/replay/replayed_services.h"

#include "platform/applications.h"
#include "platform/bluetooth.h"
#include "platform/capabilities.h"
#include "platform/cellular.h"
#include "platform/charger.h"
#include "platform/device.h"
#include "platform/files.h"
#include "platform/location.h"
#include "platform/motion.h"
#include "platform/preferences.h"
#include "platform/system_sounds.h"
#include "platform/telephony.h"
#include "platform/wake_scheduler.h"
#include "platform/wifi.h"

#include <map>
#include <set>

namespace noctara {

namespace {

DataRate rateNamed(std::string_view word) {
    return valueOf(dataRateWords, word).value_or(DataRate::kCTRegistrationDataRateUnknown);
}

/// The base of services without state. Each result comes from the trace.
struct Service {
    explicit Service(const Answers& answered) : answers(answered) {}
    const Answers& answers;
};

class ReplayedFiles final : public Files, Service {
public:
    using Service::Service;

    bool exists(const std::string& path) override {
        return answers.yes(Operation::fileExistsAtPath, {path});
    }

    std::optional<Dictionary> readDictionary(const std::string& path) override {
        return dictionaryOf(answers.json(Operation::initWithContentsOfFile, {path}));
    }

    bool writeDictionary(const std::string& path, const Dictionary& dictionary) override {
        return answers.yes(Operation::writeToFileAtomically, {path, &dictionary});
    }

    std::shared_ptr<const PropertyList> parse(const std::string& path,
                                              std::string& error) override {
        const Json value = answers.json(Operation::propertyListFromData, {path});
        if (!value.is_null())
            return std::make_shared<const PropertyList>(propertyListOf(value));
        // The trace does not have the parser's error message, but the next log line does if debug
        // is on.
        constexpr std::string_view failure = "Failed to read dict ";
        const auto logged = answers.player.nextLogLine().value_or("");
        error = logged.starts_with(failure) ? logged.substr(failure.size()) : "unreadable";
        return nullptr;
    }
};

class ReplayedCharger final : public Charger, Service {
public:
    using Service::Service;

    ObjectRef sharedController(ClassRef controllerClass) override { return controllerClass; }
    bool isOnAC(ObjectRef) override { return answers.yes(Operation::isOnAC); }
};

class ReplayedMotionManager final : public MotionManager, Service {
public:
    using Service::Service;

    void startAccelerometerUpdates() override {
        answers.call(Operation::startAccelerometerUpdates);
    }
    void setAccelerometerUpdateInterval(double seconds) override {
        answers.call(Operation::setAccelerometerUpdateInterval, {seconds});
    }
    std::optional<Acceleration> deviceMotion() override {
        return sampleOf(answers.json(Operation::deviceMotion));
    }
    std::optional<Acceleration> accelerometerData() override {
        return sampleOf(answers.json(Operation::accelerometerData));
    }
    void stopAccelerometerUpdates() override { answers.call(Operation::stopAccelerometerUpdates); }

private:
    static std::optional<Acceleration> sampleOf(const Json& axes) {
        if (!axes.is_array())
            return std::nullopt;
        return Acceleration{axes.at(0), axes.at(1), axes.at(2)};
    }
};

class ReplayedMotion final : public Motion, Service {
public:
    using Service::Service;

    std::unique_ptr<MotionManager> makeMotionManager() override {
        return std::make_unique<ReplayedMotionManager>(answers);
    }
};

class ReplayedSounds final : public SystemSounds, Service {
public:
    using Service::Service;

    bool create(const std::string& path, SoundID& id) override {
        const auto created = static_cast<SoundID>(
            answers.integer(Operation::AudioServicesCreateSystemSoundID, {path}));
        if (created != 0)
            id = created;
        return created != 0;
    }
    void play(SoundID id) override {
        answers.call(Operation::AudioServicesPlaySystemSound, {std::int64_t{id}});
    }
    void dispose(SoundID id) override {
        answers.call(Operation::AudioServicesDisposeSystemSoundID, {std::int64_t{id}});
    }
};

class ReplayedWakes final : public WakeScheduler, Service {
public:
    using Service::Service;

    void schedule(Date date, const std::string& identifier) override {
        answers.call(Operation::CPScheduleWakeAtDateWithIdentifier,
                     {date.secondsSince1970, identifier});
    }
    void cancel(Date date, const std::string& identifier) override {
        answers.call(Operation::CPCancelWakeAtDateWithIdentifier,
                     {date.secondsSince1970, identifier});
    }
};

class ReplayedApplication final : public Application, public Icon, Service {
public:
    ReplayedApplication(std::string knownAs, std::string shownAs, const Answers& answered) :
        Service(answered), identifier(std::move(knownAs)), name(std::move(shownAs)) {}

    std::optional<std::string> displayIdentifier() override { return identifier; }
    std::optional<std::string> displayName() override { return name; }
    bool hasProcess() override { return answers.yes(Operation::process, {identifier}); }
    void activate() override { answers.call(Operation::activate, {identifier}); }
    void resumeToQuit() override { answers.call(Operation::resumeToQuit, {identifier}); }
    void kill() override { answers.call(Operation::kill, {identifier}); }
    void launch() override { answers.call(Operation::launch, {identifier}); }

private:
    const std::string identifier;
    const std::string name;
};

class ReplayedApplications final : public Applications,
                                   public ApplicationController,
                                   public IconModel,
                                   Service {
public:
    ReplayedApplications(const Scenario& scenario, const Answers& answered) : Service(answered) {
        for (const auto& application : scenario.applications)
            names[application.identifier] = application.name;
    }

    ApplicationController* sharedController(ClassRef controllerClass) override {
        return controllerClass ? this : nullptr;
    }
    IconModel* sharedIconModel(ClassRef modelClass) override { return modelClass ? this : nullptr; }
    bool respondsToFrontMostApplication() override { return true; }
    Application* frontMostApplication() override {
        const Json front = answers.json(Operation::accessibilityFrontMostApplication);
        return front.is_string() ? &application(front.get<std::string>()) : nullptr;
    }
    void allApplications(const std::function<void(Application&)>& visit) override {
        for (const auto& identifier : answers.texts(Operation::allApplications))
            visit(application(identifier));
    }
    Application* springBoard() override { return &application("com.apple.springboard"); }
    bool respondsToLeafIconForIdentifier() override { return true; }
    Icon* leafIconForIdentifier(const std::string& identifier) override {
        return icon(Operation::leafIconForIdentifier, identifier);
    }
    Icon* iconForDisplayIdentifier(const std::string& identifier) override {
        return icon(Operation::iconForDisplayIdentifier, identifier);
    }

private:
    ReplayedApplication& application(const std::string& identifier) {
        const auto name = names.find(identifier);
        return known
            .try_emplace(identifier, identifier, name == names.end() ? identifier : name->second,
                         answers)
            .first->second;
    }

    Icon* icon(Operation operation, const std::string& identifier) {
        return answers.yes(operation, {identifier}) ? &application(identifier) : nullptr;
    }

    std::map<std::string, std::string> names;
    std::map<std::string, ReplayedApplication> known;
};

class ReplayedTelephony final : public Telephony, public TelephonyManager, Service {
public:
    using Service::Service;

    TelephonyManager* sharedTelephonyManager(ClassRef) override {
        return answers.yes(Operation::sharedTelephonyManager) ? this : nullptr;
    }
    bool isInAirplaneMode() override { return answers.yes(Operation::isInAirplaneMode); }
    void setIsInAirplaneMode(bool on) override {
        answers.call(Operation::setIsInAirplaneMode, {on});
    }
    void updateAirplaneMode() override { answers.call(Operation::updateAirplaneMode); }
    bool inCall() override { return answers.yes(Operation::inCall); }
    bool outgoingCallExists() override { return answers.yes(Operation::outgoingCallExists); }
    bool incomingCallExists() override { return answers.yes(Operation::incomingCallExists); }
    bool activeCallExists() override { return answers.yes(Operation::activeCallExists); }
    bool isNetworkTethering() override { return answers.yes(Operation::isNetworkTethering); }
};

class ReplayedWiFi final : public WiFi, public WiFiManager, Service {
public:
    using Service::Service;

    WiFiManager* sharedInstance(ClassRef managerClass) override {
        return managerClass ? this : nullptr;
    }
    bool isPowered() override { return answers.yes(Operation::isPowered); }
    bool wiFiEnabled() override { return answers.yes(Operation::wiFiEnabled); }
    void setWiFiEnabled(bool on) override { answers.call(Operation::setWiFiEnabled, {on}); }
    std::optional<PropertyList> perform(const char*) override {
        const Json answer = answers.json(Operation::wifiManagerQuery);
        return answer.is_null() ? std::nullopt : std::optional(propertyListOf(answer));
    }
};

class ReplayedBluetooth final : public BluetoothManager, Service {
public:
    using Service::Service;

    bool enabled() override { return answers.yes(Operation::enabled); }
    bool connected() override { return answers.yes(Operation::connected); }
    void setPowered(bool on) override { answers.call(Operation::setPowered, {on}); }
    void setEnabled(bool on) override { answers.call(Operation::setEnabled, {on}); }
};

class ReplayedLocation final : public LocationManager, Service {
public:
    using Service::Service;

    bool locationServicesEnabled() override {
        return answers.yes(Operation::locationServicesEnabled);
    }
    void setLocationServicesEnabled(bool on) override {
        answers.call(Operation::setLocationServicesEnabled, {on});
    }
};

class ReplayedCellular final : public CellularRadio, Service {
public:
    using Service::Service;

    bool dataPlanIsEnabled() override {
        return answers.yes(Operation::CTCellularDataPlanGetIsEnabled);
    }
    bool registrationDataIsEnabled() override {
        return answers.yes(Operation::CTRegistrationGetCellularDataIsEnabled);
    }
    void setDataPlanIsEnabled(bool on) override {
        answers.call(Operation::CTCellularDataPlanSetIsEnabled, {on});
    }
    DataRate currentMaxAllowedDataRate() override {
        return rateNamed(answers.text(Operation::CTRegistrationGetCurrentMaxAllowedDataRate));
    }
    bool setMaxAllowedDataRate(DataRate rate) override {
        return answers.yes(Operation::CTRegistrationSetMaxAllowedDataRate,
                           {wordOf(dataRateWords, rate)});
    }
    ServerConnectionRef createServerConnection(ServerConnectionCallback) override {
        return answers.yes(Operation::CTServerConnectionCreate) ? this : nullptr;
    }
    void releaseConnection(ServerConnectionRef) override {}
    std::vector<DataRate> supportedDataRates() override {
        std::vector<DataRate> rates;
        for (const auto& word : answers.texts(Operation::CTRegistrationCopySupportedDataRates))
            rates.push_back(rateNamed(word));
        return rates;
    }
};

class ReplayedPreferences final : public Preferences, Service {
public:
    using Service::Service;

    void setAppValue(const char* key, const PropertyList& value, const char* domain) override {
        answers.call(Operation::CFPreferencesSetAppValue, {key, &value, domain});
    }
    void appSynchronize(const char* domain) override {
        answers.call(Operation::CFPreferencesAppSynchronize, {domain});
    }
};

class ReplayedDevice final : public Device,
                             public DynamicLibraries,
                             public CapabilityFunctions,
                             Service {
public:
    ReplayedDevice(double version, const Answers& answered) :
        Service(answered), coreFoundation(version) {}

    std::string machine() override { return answers.text(Operation::uname); }
    std::int32_t userInterfaceIdiom() override {
        return static_cast<std::int32_t>(answers.integer(Operation::userInterfaceIdiom));
    }
    double coreFoundationVersionNumber() override {
        // This is a variable, so not every phone records reads of it.
        return answers.player.isNext(Operation::kCFCoreFoundationVersionNumber)
                   ? answers.real(Operation::kCFCoreFoundationVersionNumber)
                   : coreFoundation;
    }

    LibraryRef open(const char* path) override {
        return answers.yes(Operation::dlopen, {path}) ? this : nullptr;
    }
    FunctionRef find(LibraryRef, const char* name) override {
        return answers.yes(Operation::dlsym, {name}) ? this : nullptr;
    }
    void close(LibraryRef library) override {
        if (library)
            answers.call(Operation::dlclose);
    }

    int linkedGSSystemHasCapability(const std::string& name) override {
        return answers.yes(Operation::GSSystemHasCapability, {name});
    }
    int callGSSystemHasCapability(FunctionRef function, const std::string& name) override {
        return function ? linkedGSSystemHasCapability(name) : 0;
    }
    std::optional<PropertyList> callGSSystemCopyCapability(FunctionRef function,
                                                           const std::string& name) override {
        if (!function)
            return std::nullopt;
        return propertyListOf(answers.json(Operation::GSSystemCopyCapability, {name}));
    }
    int callMGGetBoolAnswer(FunctionRef function, const std::string& name) override {
        return function && answers.yes(Operation::MGGetBoolAnswer, {name});
    }

private:
    const double coreFoundation;
};

} // namespace

struct ReplayedServices::Parts {
    Parts(const Scenario& scenario, const Answers& answers) :
        files(answers),
        charger(answers),
        motion(answers),
        sounds(answers),
        wakes(answers),
        applications(scenario, answers),
        telephony(answers),
        wifi(answers),
        bluetooth(answers),
        location(answers),
        cellular(answers),
        preferences(answers),
        device(scenario.phone.corefoundation, answers) {}

    ReplayedFiles files;
    ReplayedCharger charger;
    ReplayedMotion motion;
    ReplayedSounds sounds;
    ReplayedWakes wakes;
    ReplayedApplications applications;
    ReplayedTelephony telephony;
    ReplayedWiFi wifi;
    ReplayedBluetooth bluetooth;
    ReplayedLocation location;
    ReplayedCellular cellular;
    ReplayedPreferences preferences;
    ReplayedDevice device;
};

ReplayedServices::ReplayedServices(const Scenario& scenario, const Answers& answers) :
    parts(std::make_unique<Parts>(scenario, answers)) {}

ReplayedServices::~ReplayedServices() = default;

void ReplayedServices::fill(Platform& platform) {
    platform.files = &parts->files;
    platform.wakes = &parts->wakes;
    platform.charger = &parts->charger;
    platform.motion = &parts->motion;
    platform.sounds = &parts->sounds;
    platform.applications = &parts->applications;
    platform.telephony = &parts->telephony;
    platform.wifi = &parts->wifi;
    platform.bluetooth = &parts->bluetooth;
    platform.location = &parts->location;
    platform.cellular = &parts->cellular;
    platform.preferences = &parts->preferences;
    platform.device = &parts->device;
    platform.libraries = &parts->device;
    platform.capabilities = &parts->device;
}

} // namespace noctara
