/// Formats text as printf and NSLog do, with arguments of the emulated process.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace noctara::emulated {

class Process;

/// `next` gives the next argument after the format. Throws Fault for a conversion that the library
/// does not use.
std::string formatted(Process& process, const std::string& format,
                      const std::function<std::uint64_t()>& next);

} // namespace noctara::emulated
