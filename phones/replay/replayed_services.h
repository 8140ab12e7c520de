/// The other services of a replayed phone.
#pragma once

#include "phones/model/scenario.h"
#include "phones/replay/answers.h"
#include "platform/platform.h"

#include <memory>

namespace noctara {

class ReplayedServices {
public:
    /// The scenario provides the names of applications, which a trace does not have. Both must
    /// outlive the services.
    ReplayedServices(const Scenario& scenario, const Answers& answers);
    ~ReplayedServices();

    /// Puts the services into a platform.
    void fill(Platform& platform);

private:
    struct Parts;
    std::unique_ptr<Parts> parts;
};

} // namespace noctara
