/// What stands for the phone's own libraries: each adds its functions, data and classes, under the
/// install name that a phone has.
#pragma once

namespace noctara::emulated {

class Process;

void addSystemLibraries(Process& process);

// One for each file.
void addSystem(Process& process);      ///< libSystem: the C library, the dynamic loader.
void addCpp(Process& process);         ///< libc++.
void addObjectiveC(Process& process);  ///< libobjc, and the method-hooking loader.
void addFoundation(Process& process);  ///< Foundation and CoreFoundation.
void addFrameworks(Process& process);  ///< The phone's services.
void addSpringBoard(Process& process); ///< The classes of SpringBoard, and UIKit.

} // namespace noctara::emulated
