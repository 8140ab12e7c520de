/// The monitor's log lines.
#include "monitor/noctara_thread.h"
#include "platform/system_log.h"

#include <array>
#include <cstdarg>
#include <cstdio>
#include <string>

namespace noctara {

namespace {

[[gnu::format(printf, 1, 0)]] std::string formatted(const char* format, va_list arguments) {
    va_list again;
    va_copy(again, arguments);
    std::array<char, 256> line; // Longer than most lines.
    const int length = std::vsnprintf(line.data(), line.size(), format, arguments);
    std::string text = length < 0 ? format : line.data();
    if (length >= static_cast<int>(line.size())) {
        text = std::string(static_cast<std::size_t>(length), '\0');
        std::vsnprintf(text.data(), text.size() + 1, format, again);
    }
    va_end(again);
    return text;
}

} // namespace

void NoctaraThread::log(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    platform.log->write(formatted(format, arguments));
    va_end(arguments);
}

void NoctaraThread::debugLog(const char* format, ...) {
    if (!_DEBUG_)
        return;
    va_list arguments;
    va_start(arguments, format);
    platform.log->write(formatted(format, arguments));
    va_end(arguments);
}

} // namespace noctara
