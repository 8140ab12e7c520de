/// Converts settings to JSON for the page's script.
#pragma once

#include "night/trace.h"
#include "platform/property_list.h"

namespace noctara {

/// Returns an object with four arrays. "keys" has the known keys in the order of the settings page.
/// "applications" and "others" have the other keys in the order of the file. "odd" has a sentence
/// for each oddity.
Json settingsForPage(const Dictionary& settings);

} // namespace noctara
