#include "phones/model/process_model.h"

namespace noctara {

ProcessModel* ProcessModel::current = nullptr;

ProcessModel::ProcessModel(const Scenario& scenario, const Recorder& calls) :
    recorder(calls), bundle(scenario.phone.bundle), soundsAreInstalled(scenario.phone.sounds) {
    current = this;
    for (const char* name : {"SpringBoard", "SBUIController", "SBTelephonyManager", "SBWiFiManager",
                             "SBApplicationController", "SBIconModel"})
        classes[name].name = name;
    classes["SpringBoard"].methods["applicationDidFinishLaunching:"] =
        reinterpret_cast<Implementation>(ownDidFinishLaunching);
    classes["SBUIController"].methods["ACPowerChanged"] =
        reinterpret_cast<Implementation>(ownACPowerChanged);
}

std::string ProcessModel::bundleIdentifier() {
    recorder.answered(Operation::bundleIdentifier, {}, bundle);
    return bundle;
}

ClassRef ProcessModel::findClass(const char* name) {
    const auto found = classes.find(std::string_view(name));
    const bool exists = found != classes.end();
    return recorder.answer(Operation::objc_getClass, {name}, exists) ? &found->second : nullptr;
}

void ProcessModel::hookMessage(ClassRef hooked, const char* selector, Implementation replacement,
                               Implementation& previous) {
    auto* hookedClass = static_cast<Class*>(hooked);
    recorder.call(Operation::MSHookMessageEx,
                  {hookedClass ? CallValue(hookedClass->name) : CallValue(), selector});
    if (!hookedClass)
        return;
    const auto method = hookedClass->methods.find(std::string_view(selector));
    if (method == hookedClass->methods.end())
        return;
    previous = method->second;
    method->second = replacement;
}

int ProcessModel::registerOnMainQueue(const char* name, std::function<void()> handler) {
    recorder.call(Operation::notify_register_dispatch, {name});
    handlers.emplace_back(name, std::move(handler));
    return static_cast<int>(handlers.size());
}

void ProcessModel::post(const char* name) {
    recorder.call(Operation::notify_post, {name});
}

void ProcessModel::postInProcess(const char* name, const Dictionary& userInfo) {
    recorder.call(Operation::postNotification, {name, &userInfo});
}

void ProcessModel::write(const std::string& text) {
    recorder.call(Operation::NSLog, {text});
}

bool ProcessModel::create(const std::string& path, SoundID& id) {
    const SoundID created = soundsAreInstalled ? ++lastSound : 0;
    if (recorder.answer(Operation::AudioServicesCreateSystemSoundID, {path},
                        std::int64_t{created}) == 0)
        return false;
    id = created;
    return true;
}

void ProcessModel::play(SoundID id) {
    recorder.call(Operation::AudioServicesPlaySystemSound, {std::int64_t{id}});
}

void ProcessModel::dispose(SoundID id) {
    recorder.call(Operation::AudioServicesDisposeSystemSoundID, {std::int64_t{id}});
}

void ProcessModel::applicationDidFinishLaunching() {
    if (const auto implementation = method("SpringBoard", "applicationDidFinishLaunching:"))
        reinterpret_cast<decltype(&ownDidFinishLaunching)>(implementation)(this, nullptr, this);
}

void ProcessModel::acPowerChanged(ObjectRef controller) {
    if (const auto implementation = method("SBUIController", "ACPowerChanged"))
        reinterpret_cast<decltype(&ownACPowerChanged)>(implementation)(controller, nullptr);
}

Implementation ProcessModel::method(std::string_view className, std::string_view selector) const {
    const auto found = classes.find(className);
    if (found == classes.end())
        return nullptr;
    const auto implementation = found->second.methods.find(selector);
    return implementation == found->second.methods.end() ? nullptr : implementation->second;
}

void ProcessModel::deliver(const std::string& name) {
    for (const auto& [registered, handler] : handlers)
        if (registered == name)
            handler();
}

void ProcessModel::ownDidFinishLaunching(ObjectRef, SelectorRef, ObjectRef) {
    ++current->launches;
}

void ProcessModel::ownACPowerChanged(ObjectRef, SelectorRef) {
    ++current->powerChanges;
}

} // namespace noctara
