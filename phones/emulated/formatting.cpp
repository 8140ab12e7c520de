#include "phones/emulated/formatting.h"

#include "phones/emulated/foundation.h"
#include "phones/emulated/process.h"

#include <bit>
#include <cstdio>

namespace noctara::emulated {

namespace {

template <typename Value>
std::string print(const std::string& conversion, Value value) {
    const int length = std::snprintf(nullptr, 0, conversion.c_str(), value);
    std::string text(static_cast<std::size_t>(length), '\0');
    std::snprintf(text.data(), text.size() + 1, conversion.c_str(), value);
    return text;
}

} // namespace

std::string formatted(Process& process, const std::string& format,
                      const std::function<std::uint64_t()>& next) {
    std::string result;
    for (std::size_t at = 0; at < format.size(); ++at) {
        if (format[at] != '%') {
            result += format[at];
            continue;
        }
        // Flags, width and precision; then the size of the argument; then its type.
        const std::size_t flags = format.find_first_not_of("%-+ #0123456789.", at);
        const std::size_t type =
            flags == format.npos ? flags : format.find_first_not_of("hljztq", flags);
        if (format.compare(at, 2, "%%") == 0) {
            result += '%';
            ++at;
            continue;
        }
        if (type == format.npos)
            throw Fault("the format \"" + format + "\" ends in a conversion");
        const std::string start = format.substr(at, flags - at);
        const bool isLong = format.find_first_of("ljztq", flags) < type;
        switch (format[type]) {
        case 's': {
            const Address text = next();
            result += print(start + 's', text == 0 ? "(null)" : process.memory.text(text).c_str());
            break;
        }
        case '@': {
            const Object* const object = process.objectiveC.object(next());
            result += object ? textOf(object) : "(null)";
            break;
        }
        case 'd':
        case 'i': {
            const auto word = static_cast<std::int64_t>(next());
            result +=
                print(start + "lld",
                      static_cast<long long>(isLong ? word : static_cast<std::int32_t>(word)));
            break;
        }
        case 'u':
        case 'x':
        case 'X': {
            const std::uint64_t word = next();
            result += print(
                start + "ll" + format[type],
                static_cast<unsigned long long>(isLong ? word : static_cast<std::uint32_t>(word)));
            break;
        }
        case 'c':
            result += static_cast<char>(next());
            break;
        case 'f':
        case 'g':
            result += print(start + format[type], std::bit_cast<double>(next()));
            break;
        default:
            throw Fault("the format \"" + format + "\" has a conversion that is not known here");
        }
        at = type;
    }
    return result;
}

} // namespace noctara::emulated
