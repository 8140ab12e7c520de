/// The messages that the host sends to SpringBoard's objects. The library may have replaced the
/// methods.
#pragma once

namespace noctara::springBoard {

/// Creates the application object. Main thread.
void begin();

/// Sends `applicationDidFinishLaunching:` to the application. Main thread.
void didFinishLaunching();

/// Sends `ACPowerChanged` to the SBUIController. Main thread.
void acPowerChanged();

/// Sends `scanCapabilities` to the UIDevice. False if it has no such method. Main thread.
bool scanCapabilities();

} // namespace noctara::springBoard
