/// Conversions between the core's applications and SpringBoard's objects. Main thread.
#pragma once

#include "platform/applications.h"

@class SBApplication;

namespace noctara {

/// Null for nil. The same one for the same object, kept as long as the process runs. The object is
/// not retained.
Application* applicationOf(SBApplication* object);

/// Nil for null. The application must be one of `applicationOf`.
SBApplication* objectOf(Application* application);

} // namespace noctara
