/// The monitor's log lines.
#include "monitor/noctara_thread.h"
#include "platform/system_log.h"

#include <cstdarg>
#include <cstdio>

namespace noctara {

namespace {

[[gnu::format(printf, 1, 0)]] std::string formatted(const char* format, va_list arguments) {
    va_list counted;
    va_copy(counted, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, counted);
    va_end(counted);
    if (length < 0)
        return format;
    std::string text(static_cast<std::size_t>(length), '\0');
    std::vsnprintf(text.data(), text.size() + 1, format, arguments);
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
