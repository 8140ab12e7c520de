/// Methods of Foundation that the library sends, told to the phone's observers, with the paths of
/// the phone's files led to where those are on this machine.
#pragma once

namespace noctara {

/// To be called once, before the library is injected. Main thread.
void watchFoundation();

/// Makes Foundation what an application of the phone finds: a main run loop, and the phone's time
/// zone. Main thread.
void setUpFoundation(const char* timeZone);

/// Has Foundation notice that the process's clock has become the phone's, without its complaining
/// of it on standard error.
void adoptThePhonesClock();

} // namespace noctara
