/// SpringBoard, the process's application, as the rest of the host sends it messages.
#pragma once

namespace noctara::springBoard {

/// Makes the application object. Main thread.
void begin();

/// `-[SpringBoard applicationDidFinishLaunching:]`, by whatever implements it by now.
void didFinishLaunching();

/// `-[SBUIController ACPowerChanged]`, likewise.
void acPowerChanged();

/// `-[UIDevice scanCapabilities]`. False when the device does not respond to it.
bool scanCapabilities();

} // namespace noctara::springBoard
