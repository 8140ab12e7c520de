/// The run loop of the process's main thread.
#pragma once

#include <functional>

namespace noctara::mainRunLoop {

/// Handles what has arrived. If nothing has, waits for it, at most `longestWait` seconds of this
/// machine. Main thread.
void runOnce(double longestWait);

/// Lets a waiting `runOnce` return. Any thread.
void wake();

/// Runs the loop until it has performed `work`. Main thread.
void perform(const std::function<void()>& work);

} // namespace noctara::mainRunLoop
