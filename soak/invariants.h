/// All invariants. Each is a class in invariants.cpp, with the sentence that it checks.
#pragma once

#include "soak/invariant.h"

#include <memory>
#include <vector>

namespace noctara {

using Invariants = std::vector<std::unique_ptr<Invariant>>;

/// In the order in which reports list them. The night must outlive them.
Invariants makeInvariants(WatchedNight& night);

} // namespace noctara
