#include "phones/replay/replayed_process.h"

#include <cmath>

namespace noctara {

namespace {

class StartedThread final : public Thread {};

void didFinishLaunching(ObjectRef, SelectorRef, ObjectRef) {}
void powerChanged(ObjectRef, SelectorRef) {}

/// The lines about the list of applications, which the monitor writes while it holds its lock.
bool isWrittenUnderLock(std::string_view text) {
    return text.ends_with("apps to monitor") || text.starts_with("This is an app=") ||
           text.starts_with("app to monitor : ");
}

constexpr const char* launchSelector = "applicationDidFinishLaunching:";
constexpr const char* chargerSelector = "ACPowerChanged";

} // namespace

void ReplayedProcess::applicationDidFinishLaunching() {
    if (const auto hook = hooks.find(launchSelector); hook != hooks.end())
        reinterpret_cast<decltype(&didFinishLaunching)>(hook->second)(this, nullptr, this);
}

void ReplayedProcess::acPowerChanged() {
    if (const auto hook = hooks.find(chargerSelector); hook != hooks.end())
        reinterpret_cast<decltype(&powerChanged)>(hook->second)(this, nullptr);
}

void ReplayedProcess::deliverNotification(const std::string& name) {
    const auto [begin, end] = handlers.equal_range(name);
    for (auto handler = begin; handler != end; ++handler)
        handler->second();
}

void ReplayedProcess::deliverPowerMessage(const PowerMessage& message) {
    if (powerCallback && hasPowerSource)
        powerCallback(nullptr, 0, message.type,
                      reinterpret_cast<void*>(static_cast<std::intptr_t>(message.notification)));
}

void ReplayedProcess::write(const std::string& text) {
    if (isWrittenUnderLock(text))
        answers.player.takeLogLineLater(text);
    else
        answers.call(Operation::NSLog, {text});
}

std::string ReplayedProcess::bundleIdentifier() {
    return answers.text(Operation::bundleIdentifier);
}

ClassRef ReplayedProcess::findClass(const char* name) {
    if (!answers.yes(Operation::objc_getClass, {name}))
        return nullptr;
    return const_cast<std::string*>(&*classes.insert(name).first);
}

void ReplayedProcess::hookMessage(ClassRef hooked, const char* selector, Implementation replacement,
                                  Implementation& previous) {
    const auto* name = static_cast<const std::string*>(hooked);
    answers.call(Operation::MSHookMessageEx, {name ? CallValue(*name) : CallValue(), selector});
    if (!name)
        return;
    hooks[selector] = replacement;
    previous = selector == std::string_view(launchSelector)
                   ? reinterpret_cast<Implementation>(didFinishLaunching)
                   : reinterpret_cast<Implementation>(powerChanged);
}

std::unique_ptr<Thread> ReplayedProcess::start(const char* name, std::function<void()> body) {
    answers.call(Operation::NSThreadStart, {name});
    answers.player.startMonitor(std::move(body));
    return std::make_unique<StartedThread>();
}

void ReplayedProcess::performOnMainThread(const char* selector, const std::function<void()>& work) {
    answers.call(Operation::performSelectorOnMainThread, {selector});
    if (selector == std::string_view("playAudioAsync"))
        answers.player.performOnMainThread({{Operation::AudioServicesPlaySystemSound}}, work);
    else
        answers.player.performOnMainThread(
            {{Operation::objc_getClass}, "Noctara : About to change airplane mode"}, work);
}

std::int64_t ReplayedProcess::time() {
    answers.player.waitForTurn();
    // Only a phone in real time records reads of the clock. On other phones only sleep takes time.
    if (answers.player.isNext(Operation::time)) {
        answers.player.playInRealTime();
        return std::get<TracedCall>(answers.player.take(Operation::time, {}).what)
            .result.get<std::int64_t>();
    }
    return static_cast<std::int64_t>(std::floor(answers.player.now().secondsSince1970));
}

Date ReplayedProcess::now() {
    if (!isMainThread())
        answers.player.waitForTurn();
    if (answers.player.isNext(Operation::date))
        return {std::get<TracedCall>(answers.player.take(Operation::date, {}).what)
                    .result.get<double>()};
    return answers.player.now();
}

void ReplayedProcess::sleep(unsigned seconds) {
    answers.call(Operation::sleep, {std::int64_t{seconds}});
    if (seconds != 0)
        answers.player.waitForTurn();
}

int ReplayedProcess::registerOnMainQueue(const char* name, std::function<void()> handler) {
    answers.call(Operation::notify_register_dispatch, {name});
    handlers.emplace(name, std::move(handler));
    return static_cast<int>(handlers.size());
}

void ReplayedProcess::post(const char* name) {
    answers.call(Operation::notify_post, {name});
}

void ReplayedProcess::postInProcess(const char* name, const Dictionary& userInfo) {
    answers.call(Operation::postNotification, {name, &userInfo});
}

PowerConnection ReplayedProcess::registerForSystemPower(PowerCallback callback,
                                                        NotificationPortRef& port) {
    const auto connection =
        static_cast<PowerConnection>(answers.integer(Operation::IORegisterForSystemPower));
    if (connection != 0) {
        powerCallback = callback;
        port = this;
    }
    return connection;
}

void ReplayedProcess::addSource(RunLoopRef, NotificationPortRef) {
    answers.call(Operation::CFRunLoopAddSource, {"kCFRunLoopCommonModes"});
    hasPowerSource = true;
}

void ReplayedProcess::allowPowerChange(PowerConnection connection, std::intptr_t notification) {
    answers.call(Operation::IOAllowPowerChange,
                 {std::int64_t{connection}, static_cast<std::int64_t>(notification)});
}

void ReplayedProcess::cancelPowerChange(PowerConnection connection, std::intptr_t notification) {
    answers.call(Operation::IOCancelPowerChange,
                 {std::int64_t{connection}, static_cast<std::int64_t>(notification)});
}

} // namespace noctara
