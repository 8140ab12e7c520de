/// The run loop of the process's main thread.
#pragma once

#include <functional>

namespace noctara::mainRunLoop {

/// Handles what has arrived. When nothing has, waits for it, at most `longestWait` seconds by the
/// clock of this machine. Main thread.
void runOnce(double longestWait);

/// Makes a `runOnce` that waits return. Any thread.
void wake();

/// Runs the loop until it has performed `work`. Main thread.
void perform(const std::function<void()>& work);

} // namespace noctara::mainRunLoop
