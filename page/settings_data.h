/// What a settings file contains, for the page's script.
#pragma once

#include "night/trace.h"
#include "platform/property_list.h"

namespace noctara {

/// "keys", in the order of the settings page, "applications" and "others", in the order of the
/// file, and "odd", sentences.
Json settingsForPage(const Dictionary& settings);

} // namespace noctara
