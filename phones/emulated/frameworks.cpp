/// The phone's services: functions and classes that pass every question on to the model of the
/// phone.
#include "phones/emulated/emulated_phone.h"
#include "phones/emulated/foundation.h"
#include "phones/emulated/process.h"
#include "phones/emulated/system_libraries.h"

namespace noctara::emulated {

namespace {

std::string framework(const std::string& name) {
    return "/System/Library/Frameworks/" + name + ".framework/" + name;
}

std::string privateFramework(const std::string& name) {
    return "/System/Library/PrivateFrameworks/" + name + ".framework/" + name;
}

void addCoreFoundation(Process& process) {
    const std::string name = framework("CoreFoundation");
    process.addData(name, "_kCFAllocatorDefault", 8);
    process.memory.write(process.addData(name, "_kCFCoreFoundationVersionNumber", 8),
                         process.phone.coreFoundationVersion);
    Object& commonModes =
        process.objectiveC.add(std::make_unique<StringObject>("kCFRunLoopCommonModes"),
                               process.objectiveC.existingClass("NSString"), Address{0});
    commonModes.isConstant = true;
    process.memory.write(process.addData(name, "_kCFRunLoopCommonModes", 8), commonModes.address);
    process.addFunction(name, "_CFRelease", [](NativeCall& c) {
        if (c.word(0) == 0)
            throw Fault("CFRelease of null");
        c.process.objectiveC.release(c.object(0), c.cpu);
    });
    process.addFunction(name, "_CFRunLoopGetCurrent", [](NativeCall& c) {
        c.returns(reinterpret_cast<Address>(c.process.phone.power.currentRunLoop()));
    });
    process.addFunction(name, "_CFRunLoopAddSource", [](NativeCall& c) {
        // The messages come on the main run loop, in every mode.
        if (textOf(c.object(2)) == "kCFRunLoopCommonModes")
            c.process.phone.power.addSource(reinterpret_cast<RunLoopRef>(c.word(0)),
                                            reinterpret_cast<NotificationPortRef>(c.word(1)));
    });
    process.addFunction(name, "_CFPreferencesSetAppValue", [](NativeCall& c) {
        c.process.phone.radios.setAppValue(textOf(c.object(0)).c_str(), valueOf(c.object(1)),
                                           textOf(c.object(2)).c_str());
    });
    process.addFunction(name, "_CFPreferencesAppSynchronize", [](NativeCall& c) {
        c.process.phone.radios.appSynchronize(textOf(c.object(0)).c_str());
        c.returnsFlag(true);
    });
}

void addSounds(Process& process) {
    const std::string name = framework("AudioToolbox");
    process.addFunction(name, "_AudioServicesCreateSystemSoundID", [](NativeCall& c) {
        constexpr auto fileNotFound = static_cast<std::uint32_t>(-43);
        SoundID sound = 0;
        const bool created = c.process.phone.process.create(pathOfUrl(c.object(0)), sound);
        if (created)
            c.store(c.word(1), sound);
        c.returnsNumber(created ? 0 : fileNotFound);
    });
    process.addFunction(name, "_AudioServicesPlaySystemSound",
                        [](NativeCall& c) { c.process.phone.process.play(c.number(0)); });
    process.addFunction(name, "_AudioServicesDisposeSystemSoundID", [](NativeCall& c) {
        c.process.phone.process.dispose(c.number(0));
        c.returnsNumber(0);
    });
}

void addPower(Process& process) {
    const std::string name = "/System/Library/Frameworks/IOKit.framework/Versions/A/IOKit";
    process.addFunction(name, "_IORegisterForSystemPower", [](NativeCall& c) {
        NotificationPortRef port = nullptr;
        const PowerConnection connection =
            c.process.phone.registerForSystemPower(c.word(0), c.word(2), port);
        if (connection != 0) {
            c.store(c.word(1), reinterpret_cast<Address>(port));
            c.store(c.word(3), connection);
        }
        c.returnsNumber(connection);
    });
    process.addFunction(name, "_IONotificationPortGetRunLoopSource",
                        [](NativeCall& c) { c.returns(c.word(0)); });
    process.addFunction(name, "_IOAllowPowerChange", [](NativeCall& c) {
        c.process.phone.power.allowPowerChange(c.number(0), static_cast<std::intptr_t>(c.word(1)));
        c.returnsNumber(0);
    });
    process.addFunction(name, "_IOCancelPowerChange", [](NativeCall& c) {
        c.process.phone.power.cancelPowerChange(c.number(0), static_cast<std::intptr_t>(c.word(1)));
        c.returnsNumber(0);
    });

    const std::string appSupport = privateFramework("AppSupport");
    const auto dateOf = [](const Object* object) {
        const auto* const date = dynamic_cast<const DateObject*>(object);
        if (!date)
            throw Fault("the date of a wake-up is no date");
        return date->date;
    };
    process.addFunction(appSupport, "_CPScheduleWakeAtDateWithIdentifier", [=](NativeCall& c) {
        c.process.phone.power.schedule(dateOf(c.object(0)), textOf(c.object(1)));
    });
    process.addFunction(appSupport, "_CPCancelWakeAtDateWithIdentifier", [=](NativeCall& c) {
        c.process.phone.power.cancel(dateOf(c.object(0)), textOf(c.object(1)));
    });
}

/// A connection to the telephony server, which is closed when it is released.
struct ConnectionObject final : Object {
    ServerConnectionRef connection = nullptr;
    void destroy(Process& process) override { process.phone.radios.releaseConnection(connection); }
};

void addCellular(Process& process) {
    const std::string name = framework("CoreTelephony");
    using enum DataRate;
    std::map<DataRate, Object*> constants;
    for (const auto& [rate, symbol] :
         {std::pair(kCTRegistrationDataRate2G, "kCTRegistrationDataRate2G"),
          std::pair(kCTRegistrationDataRate3G, "kCTRegistrationDataRate3G"),
          std::pair(kCTRegistrationDataRate4G, "kCTRegistrationDataRate4G")}) {
        Object& constant =
            process.objectiveC.add(std::make_unique<StringObject>(symbol),
                                   process.objectiveC.existingClass("NSString"), Address{0});
        constant.isConstant = true;
        process.memory.write(process.addData(name, std::string("_") + symbol, 8), constant.address);
        constants[rate] = &constant;
    }
    process.addFunction(name, "_CTCellularDataPlanGetIsEnabled", [](NativeCall& c) {
        c.returnsFlag(c.process.phone.radios.dataPlanIsEnabled());
    });
    process.addFunction(name, "_CTCellularDataPlanSetIsEnabled", [](NativeCall& c) {
        c.process.phone.radios.setDataPlanIsEnabled(c.flag(0));
    });
    process.addFunction(name, "_CTRegistrationGetCellularDataIsEnabled", [](NativeCall& c) {
        c.returnsFlag(c.process.phone.radios.registrationDataIsEnabled());
    });
    process.addFunction(
        name, "_CTRegistrationGetCurrentMaxAllowedDataRate", [constants](NativeCall& c) {
            const auto found = constants.find(c.process.phone.radios.currentMaxAllowedDataRate());
            c.returnsObject(found == constants.end() ? nullptr : found->second);
        });
    process.addFunction(name, "_CTRegistrationSetMaxAllowedDataRate", [constants](NativeCall& c) {
        DataRate wanted = kCTRegistrationDataRateUnknown;
        for (const auto& [rate, constant] : constants)
            if (constant->address == c.word(0))
                wanted = rate;
        c.returnsFlag(c.process.phone.radios.setMaxAllowedDataRate(wanted));
    });
    process.addFunction(name, "_CTRegistrationCopySupportedDataRates", [constants](NativeCall& c) {
        auto& rates = c.make<ArrayObject>("NSArray");
        for (const DataRate rate : c.process.phone.radios.supportedDataRates())
            if (const auto found = constants.find(rate); found != constants.end())
                rates.items.push_back(found->second);
        c.returnsObject(&rates);
    });
    process.addClass("", "CTServerConnection").make = [] {
        return std::make_unique<ConnectionObject>();
    };
    process.addFunction(name, "__CTServerConnectionCreate", [](NativeCall& c) {
        const auto opened = c.process.phone.createServerConnection(c.word(1));
        if (!opened)
            return c.returns(0);
        auto& connection = c.make<ConnectionObject>("CTServerConnection");
        connection.connection = opened;
        c.returnsObject(&connection);
    });
}

void addCapabilities(Process& process) {
    const std::string graphics = privateFramework("GraphicsServices");
    process.addFunction(graphics, "_GSSystemHasCapability", [](NativeCall& c) {
        c.returnsNumber(static_cast<std::uint32_t>(
            c.process.phone.device.linkedGSSystemHasCapability(textOf(c.object(0)))));
    });
    // The model only tests that a function has been found.
    static char found;
    process.addFunction(graphics, "_GSSystemCopyCapability", [](NativeCall& c) {
        const auto value =
            c.process.phone.device.callGSSystemCopyCapability(&found, textOf(c.object(0)));
        c.returnsObject(value ? objectOf(c, *value) : nullptr);
    });
    process.addFunction("/usr/lib/libMobileGestalt.dylib", "_MGGetBoolAnswer", [](NativeCall& c) {
        c.returnsNumber(static_cast<std::uint32_t>(
            c.process.phone.device.callMGGetBoolAnswer(&found, textOf(c.object(0)))));
    });
}

struct MotionManagerObject final : Object {
    std::unique_ptr<MotionManager> manager;
};

struct SampleObject final : Object {
    Acceleration acceleration;
};

void addMotion(Process& process) {
    const std::string name = framework("CoreMotion");
    const auto vector = [](Message& m) {
        // A structure of three doubles is returned in three registers.
        const auto& [x, y, z] = m.self<SampleObject>().acceleration;
        m.cpu.returnD(0, x);
        m.cpu.returnD(1, y);
        m.cpu.returnD(2, z);
    };
    for (const auto& [className, selector] : {std::pair("CMAccelerometerData", "acceleration"),
                                              std::pair("CMDeviceMotion", "gravity")}) {
        Class& sample = process.addClass(name, className);
        sample.make = [] { return std::make_unique<SampleObject>(); };
        sample.instanceMethods[selector] = {0, vector};
    }
    Class& manager = process.addClass(name, "CMMotionManager");
    manager.make = [&phone = process.phone] {
        auto made = std::make_unique<MotionManagerObject>();
        made->manager = phone.motion.makeMotionManager();
        return made;
    };
    const auto give = [](Message& m, const char* className,
                         const std::optional<Acceleration>& measured) {
        if (!measured)
            return m.returns(0);
        auto& sample = m.make<SampleObject>(className);
        sample.acceleration = *measured;
        m.returnsAutoreleased(&sample);
    };
    auto& methods = manager.instanceMethods;
    methods["startAccelerometerUpdates"] = {
        0, [](Message& m) { m.self<MotionManagerObject>().manager->startAccelerometerUpdates(); }};
    methods["stopAccelerometerUpdates"] = {
        0, [](Message& m) { m.self<MotionManagerObject>().manager->stopAccelerometerUpdates(); }};
    methods["setAccelerometerUpdateInterval:"] = {
        0, [](Message& m) {
            m.self<MotionManagerObject>().manager->setAccelerometerUpdateInterval(m.real(0));
        }};
    methods["deviceMotion"] = {0, [=](Message& m) {
                                   give(m, "CMDeviceMotion",
                                        m.self<MotionManagerObject>().manager->deviceMotion());
                               }};
    methods["accelerometerData"] = {
        0, [=](Message& m) {
            give(m, "CMAccelerometerData",
                 m.self<MotionManagerObject>().manager->accelerometerData());
        }};
}

void addRadios(Process& process) {
    Class& bluetooth = process.addClass(privateFramework("BluetoothManager"), "BluetoothManager");
    bluetooth.classMethods["sharedInstance"] = {
        0, [](Message& m) { m.returnsObject(&m.process.shared("BluetoothManager")); }};
    bluetooth.instanceMethods["enabled"] = {
        0, [](Message& m) { m.returnsFlag(m.process.phone.radios.enabled()); }};
    bluetooth.instanceMethods["connected"] = {
        0, [](Message& m) { m.returnsFlag(m.process.phone.radios.connected()); }};
    bluetooth.instanceMethods["setPowered:"] = {
        0, [](Message& m) { m.process.phone.radios.setPowered(m.flag(0)); }};
    bluetooth.instanceMethods["setEnabled:"] = {
        0, [](Message& m) { m.process.phone.radios.setEnabled(m.flag(0)); }};

    Class& location = process.addClass(framework("CoreLocation"), "CLLocationManager");
    location.classMethods["locationServicesEnabled"] = {
        0, [](Message& m) { m.returnsFlag(m.process.phone.radios.locationServicesEnabled()); }};
    location.classMethods["setLocationServicesEnabled:"] = {
        0, [](Message& m) { m.process.phone.radios.setLocationServicesEnabled(m.flag(0)); }};
}

} // namespace

void addFrameworks(Process& process) {
    addCoreFoundation(process);
    addSounds(process);
    addPower(process);
    addCellular(process);
    addCapabilities(process);
    addMotion(process);
    addRadios(process);
}

} // namespace noctara::emulated
