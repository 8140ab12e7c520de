/// Shortens a scenario that fails to the shortest one that still fails.
#pragma once

#include "phones/model/scenario.h"

#include <functional>

namespace noctara {

/// Leaves out events and parts of events, settings, applications, wake-ups and properties of the
/// phone, and shortens the times between events, as long as `fails` returns true for the rest.
/// `fails` must return true for `scenario`.
Scenario shrink(Scenario scenario, const std::function<bool(const Scenario&)>& fails);

} // namespace noctara
