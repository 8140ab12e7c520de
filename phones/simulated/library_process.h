/// Sets and resets the process-wide state of the linked-in library, so that one program can play
/// many nights.
#pragma once

#include "platform/platform.h"

namespace noctara {

/// Sets the phone of the library. `platform` must live until `endLibrary`.
void startLibrary(const Platform& platform);

/// Deletes the monitor and resets all process-wide state of the library. The monitor thread must
/// have ended.
void endLibrary();

} // namespace noctara
