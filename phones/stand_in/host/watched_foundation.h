/// Methods of Foundation as the library meets them: each call is recorded, the clock is the
/// phone's, and a path of the phone's leads to the file on this machine. Calls by others are passed
/// on.
#pragma once

namespace noctara {

/// Replaces the methods. To be called once, before the library is injected. Main thread.
void watchFoundation();

/// Sets the time zone of Foundation's calendar, an IANA name. Main thread.
void setUpFoundation(const char* timeZone);

} // namespace noctara
