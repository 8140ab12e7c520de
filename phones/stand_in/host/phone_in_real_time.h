/// The phone whose clock runs by itself, as fast as a real one or so many times faster. Its threads
/// run at once, as on a phone.
#pragma once

#include "phones/stand_in/host/injected_phone.h"

#include <atomic>
#include <condition_variable>

namespace noctara {

class PhoneInRealTime final : public InjectedPhone {
public:
    /// `speed`: how many seconds pass on the phone in one of this machine's; over 0.
    PhoneInRealTime(const Scenario& scenario, const std::filesystem::path& root, double speed);

    Date wallClock() const override;
    void monitorSleeps(unsigned seconds) override;
    bool playToTheEnd() override;

private:
    void catchUp() override;

    /// By the phone's clock that is never set.
    double present() const;

    const double speed;
    const double begin;              ///< By the phone's clock that is never set.
    const double beginOnThisMachine; ///< By its monotonic clock.
    std::atomic<double> wallOffset = 0;
    std::condition_variable_any phoneMayHaveWokenUp;
};

} // namespace noctara
