/// `noctara capabilities`: lists the capabilities of the scenario's phone.
#pragma once

#include "phones/model/scenario.h"

namespace noctara {

/// Prints the capabilities of the scenario's phone to standard output.
void reportCapabilities(const Scenario& scenario);

} // namespace noctara
