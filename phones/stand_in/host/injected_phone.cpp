#include "phones/stand_in/host/injected_phone.h"

#include "phones/stand_in/host/injected_library.h"
#include "phones/stand_in/host/main_run_loop.h"
#include "phones/stand_in/host/springboard.h"

namespace noctara {

extern "C" {
StandInPhone* standInPhone = nullptr;
}

InjectedPhone* injectedPhone = nullptr;

InjectedPhone::InjectedPhone(const Scenario& scenario, const std::filesystem::path& root) :
    PhoneModel(scenario, makeDirectoryFileStore(root)),
    rootFolder(root),
    services{recorder, scenario.phone.corefoundation,
             radios,   device,
             radios,   device,
             radios,   motion,
             process,  radios,
             power,    process,
             power} {
    injectedPhone = this;
    standInPhone = this;
}

std::filesystem::path InjectedPhone::placeOf(const std::string& pathOnPhone) const {
    return rootFolder / std::filesystem::path(resolvedPath(pathOnPhone)).relative_path();
}

const StandInServices& InjectedPhone::enter() {
    mutex.lock();
    ++depth;
    catchUp();
    recorder.onMainThread = std::this_thread::get_id() == mainThread;
    return services;
}

void InjectedPhone::leave() {
    catchUp();
    --depth;
    mutex.unlock();
}

void InjectedPhone::performOutside(const std::function<void()>& work) {
    struct Outside {
        explicit Outside(InjectedPhone& left) : phone(left), entered(left.depth) {
            for (int i = 0; i < entered; ++i)
                phone.leave();
        }
        ~Outside() {
            for (int i = 0; i < entered; ++i)
                phone.enter();
        }
        InjectedPhone& phone;
        const int entered;
    };
    const Outside outside(*this);
    work();
}

void InjectedPhone::performOnMainRunLoop(const std::function<void()>& work) {
    performOutside([&] { mainRunLoop::perform(work); });
}

void InjectedPhone::sendACPowerChanged() {
    performOnMainRunLoop([] { springBoard::acPowerChanged(); });
}

void InjectedPhone::stopMonitor() {
    injectedLibrary::stopMonitor();
}

} // namespace noctara
