/// SpringBoard's own classes, and those of UIKit that it derives from.
#include "phones/emulated/emulated_phone.h"
#include "phones/emulated/foundation.h"
#include "phones/emulated/process.h"
#include "phones/emulated/system_libraries.h"

namespace noctara::emulated {

namespace {

const std::string uiKit = "/System/Library/Frameworks/UIKit.framework/UIKit";
/// SpringBoard exports nothing: its classes are looked up by name.
const std::string springBoard;

/// The object for a part of the model: the same object each time.
template <typename Part>
struct PartObject final : Object {
    explicit PartObject(Part* of) : part(of) {}
    Part* part;
};

template <typename Part>
Object* objectFor(Process& process, const char* className, Part* part) {
    if (!part)
        return nullptr;
    Object*& known = process.objectsOfParts[part];
    if (!known) {
        known = &process.objectiveC.add(std::make_unique<PartObject<Part>>(part),
                                        process.objectiveC.existingClass(className), Address{0});
        known->isConstant = true;
    }
    return known;
}

template <typename Part>
Part& partOf(Message& m) {
    return *m.self<PartObject<Part>>().part;
}

/// The model tests whether its caller has found a class.
ClassRef aClass(Message& m) {
    return &m.process;
}

Class& addShared(Process& process, const std::string& library, const char* name,
                 const char* accessor) {
    Class& added = process.addClass(library, name);
    added.classMethods[accessor] = {
        0, [name](Message& m) { m.returnsObject(&m.process.shared(name)); }};
    return added;
}

void returnsText(Message& m, const std::optional<std::string>& text) {
    m.returnsAutoreleased(text ? &m.make("NSString", StringObject(*text)) : nullptr);
}

void addUiKit(Process& process) {
    Class& device = addShared(process, uiKit, "UIDevice", "currentDevice");
    device.instanceMethods["userInterfaceIdiom"] = {
        0, [](Message& m) {
            m.returns(static_cast<std::uint64_t>(
                std::int64_t{m.process.phone.device.userInterfaceIdiom()}));
        }};
    Class& application = process.addClass(uiKit, "UIApplication");
    application.classMethods["sharedApplication"] = {
        0, [](Message& m) { m.returnsObject(&m.process.shared("SpringBoard")); }};
    Class& home = process.addClass(springBoard, "SpringBoard", "UIApplication");
    home.instanceMethods["applicationDidFinishLaunching:"] = {0, [](Message&) {}};
    if (process.phone.applications.respondsToFrontMostApplication())
        home.instanceMethods["_accessibilityFrontMostApplication"] = {
            0, [](Message& m) {
                m.returnsObject(objectFor(m.process, "SBApplication",
                                          m.process.phone.applications.frontMostApplication()));
            }};
}

void addControllers(Process& process) {
    Class& ui = addShared(process, springBoard, "SBUIController", "sharedInstance");
    ui.instanceMethods["ACPowerChanged"] = {0, [](Message&) {}};
    ui.instanceMethods["isOnAC"] = {
        0, [](Message& m) { m.returnsFlag(m.process.phone.power.isOnAC(aClass(m))); }};

    Class& telephony = process.addClass(springBoard, "SBTelephonyManager");
    telephony.classMethods["sharedTelephonyManager"] = {
        0, [](Message& m) {
            const bool isThere = m.process.phone.radios.sharedTelephonyManager(aClass(m));
            m.returnsObject(isThere ? &m.process.shared("SBTelephonyManager") : nullptr);
        }};
    const auto question = [&](const char* selector, bool (TelephonyManager::*ask)()) {
        telephony.instanceMethods[selector] = {0, [ask](Message& m) {
                                                   TelephonyManager& manager =
                                                       m.process.phone.radios;
                                                   m.returnsFlag((manager.*ask)());
                                               }};
    };
    question("isInAirplaneMode", &TelephonyManager::isInAirplaneMode);
    question("inCall", &TelephonyManager::inCall);
    question("outgoingCallExists", &TelephonyManager::outgoingCallExists);
    question("incomingCallExists", &TelephonyManager::incomingCallExists);
    question("activeCallExists", &TelephonyManager::activeCallExists);
    question("isNetworkTethering", &TelephonyManager::isNetworkTethering);
    telephony.instanceMethods["setIsInAirplaneMode:"] = {
        0, [](Message& m) { m.process.phone.radios.setIsInAirplaneMode(m.flag(0)); }};
    telephony.instanceMethods["updateAirplaneMode"] = {
        0, [](Message& m) { m.process.phone.radios.updateAirplaneMode(); }};

    Class& wifi = addShared(process, springBoard, "SBWiFiManager", "sharedInstance");
    wifi.instanceMethods["isPowered"] = {
        0, [](Message& m) { m.returnsFlag(m.process.phone.radios.isPowered()); }};
    wifi.instanceMethods["wiFiEnabled"] = {
        0, [](Message& m) { m.returnsFlag(m.process.phone.radios.wiFiEnabled()); }};
    wifi.instanceMethods["setWiFiEnabled:"] = {
        0, [](Message& m) { m.process.phone.radios.setWiFiEnabled(m.flag(0)); }};
    wifi.instanceMethods["wifiManagerQuery"] = {
        0, [](Message& m) {
            const auto answer = m.process.phone.radios.perform("wifiManagerQuery");
            m.returnsAutoreleased(answer ? objectOf(m, *answer) : nullptr);
        }};
}

void addApplications(Process& process) {
    Class& application = process.addClass(springBoard, "SBApplication");
    auto& methods = application.instanceMethods;
    methods["displayIdentifier"] = {
        0, [](Message& m) { returnsText(m, partOf<Application>(m).displayIdentifier()); }};
    methods["displayName"] = {
        0, [](Message& m) { returnsText(m, partOf<Application>(m).displayName()); }};
    methods["process"] = {
        0, [](Message& m) {
            m.returnsObject(partOf<Application>(m).hasProcess() ? m.receiver.object : nullptr);
        }};
    methods["activate"] = {0, [](Message& m) { partOf<Application>(m).activate(); }};
    methods["resumeToQuit"] = {0, [](Message& m) { partOf<Application>(m).resumeToQuit(); }};
    methods["kill"] = {0, [](Message& m) { partOf<Application>(m).kill(); }};

    Class& controller =
        addShared(process, springBoard, "SBApplicationController", "sharedInstance");
    controller.instanceMethods["allApplications"] = {
        0, [](Message& m) {
            auto& all = m.make<ArrayObject>("NSMutableArray");
            m.process.phone.applications.allApplications([&](Application& one) {
                all.items.push_back(objectFor(m.process, "SBApplication", &one));
            });
            m.returnsAutoreleased(&all);
        }};
    controller.instanceMethods["springBoard"] = {
        0, [](Message& m) {
            m.returnsObject(
                objectFor(m.process, "SBApplication", m.process.phone.applications.springBoard()));
        }};

    process.addClass(springBoard, "SBIcon").instanceMethods["launch"] = {
        0, [](Message& m) { partOf<Icon>(m).launch(); }};
    Class& icons = addShared(process, springBoard, "SBIconModel", "sharedInstance");
    icons.instanceMethods["leafIconForIdentifier:"] = {
        0, [](Message& m) {
            m.returnsObject(
                objectFor(m.process, "SBIcon",
                          m.process.phone.applications.leafIconForIdentifier(textOf(m.object(0)))));
        }};
    icons.instanceMethods["iconForDisplayIdentifier:"] = {
        0, [](Message& m) {
            m.returnsObject(objectFor(
                m.process, "SBIcon",
                m.process.phone.applications.iconForDisplayIdentifier(textOf(m.object(0)))));
        }};
}

} // namespace

void addSpringBoard(Process& process) {
    addUiKit(process);
    addControllers(process);
    addApplications(process);
}

} // namespace noctara::emulated
