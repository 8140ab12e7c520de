/// The run loop of the process's main thread.
#pragma once

#include <functional>

namespace noctara::mainRunLoop {

/// Works off what has arrived, waiting for it up to that many seconds of this machine's. Main
/// thread.
void runOnce(double longestWait);

/// Has `runOnce` return soon. Any thread.
void wake();

/// Runs the loop until it has done `work`. Main thread.
void perform(const std::function<void()>& work);

} // namespace noctara::mainRunLoop
