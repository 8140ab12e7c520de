/// The phone whose clock runs with the clock of this machine, or at a multiple of its speed. Its
/// threads run at the same time, as on a phone.
///
/// It also records the library's reads of the clock, because a replay of such a night needs their
/// results.
#pragma once

#include "phones/stand_in/host/injected_phone.h"

#include <condition_variable>

namespace noctara {

class PhoneInRealTime final : public InjectedPhone {
public:
    /// `speed`: seconds that pass on the phone in one second of this machine. Above 0.
    PhoneInRealTime(const Scenario& scenario, const std::filesystem::path& root, double speed);

    std::int64_t readTime() override;
    Date readDate() override;
    void monitorSleeps(unsigned seconds) override;
    bool playToTheEnd() override;

private:
    void catchUp() override;

    /// The present instant by the phone's monotonic clock.
    double present() const;

    const double speed;
    const double begin;              ///< By the phone's monotonic clock.
    const double beginOnThisMachine; ///< By the machine's monotonic clock.
    std::condition_variable_any phoneMayHaveWokenUp;
};

} // namespace noctara
