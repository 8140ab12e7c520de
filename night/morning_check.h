/// Whether waking brought back exactly what was on: the one thing that must not go wrong.
#pragma once

#include "phones/model/phone_model.h"

#include <optional>
#include <string>
#include <vector>

namespace noctara {

class MorningCheck final : public PhoneObserver {
public:
    explicit MorningCheck(const PhoneModel& watched) : phone(watched) {}

    void called(const Call& call) override;
    void happens(const Happening& happening) override;

    /// One sentence for every radio that waking left other than it was before the sleep state, or
    /// than a hand set it since.
    const std::vector<std::string>& complaints() const { return found; }

private:
    void compare(Date at);

    const PhoneModel& phone;
    std::optional<RadiosModel::States> expected; ///< Absent while not in the sleep state.
    std::vector<std::string> found;
};

} // namespace noctara
