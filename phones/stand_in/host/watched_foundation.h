/// Replacements for methods of Foundation. They record the library's calls, give it the clock of
/// the phone, and turn a path on the phone into the path of the file on this machine. Calls by
/// other code are passed on.
#pragma once

namespace noctara {

/// Replaces the methods. Call it once, before the library is injected. Main thread.
void watchFoundation();

/// Sets the time zone of Foundation's calendar, an IANA name. Main thread.
void setUpFoundation(const char* timeZone);

} // namespace noctara
