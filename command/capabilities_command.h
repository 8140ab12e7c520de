/// `noctara capabilities`: lists what the scenario's phone reports of itself.
#pragma once

#include "phones/model/scenario.h"

namespace noctara {

/// Prints the capability report of the scenario's phone on standard output.
void reportCapabilities(const Scenario& scenario);

} // namespace noctara
