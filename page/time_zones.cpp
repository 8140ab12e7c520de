/// Gives Abseil the time zones of the browser, as files in the format of the zoneinfo database.
#include <absl/base/config.h>
#include <absl/time/internal/cctz/include/cctz/zone_info_source.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <string>

#include <emscripten.h>

// clang-format off
/// The file of a zone, which the caller frees. Null if the browser has no zone of this name.
EM_JS(std::uint8_t*, zoneFile, (const char* name, std::size_t* size), {
    const bytes = Module["zoneFile"](UTF8ToString(name));
    if (!bytes)
        return 0;
    const place = _malloc(bytes.length);
    HEAPU8.set(bytes, place);
    HEAPU32[size >> 2] = bytes.length;
    return place;
});
// clang-format on

// Abseil's names are in an inline namespace of its version.
namespace absl {
ABSL_NAMESPACE_BEGIN
namespace time_internal::cctz_extension {

namespace {

class BrowserZone final : public cctz::ZoneInfoSource {
public:
    BrowserZone(std::uint8_t* file, std::size_t fileSize) :
        bytes(file, &std::free), size(fileSize) {}

    std::size_t Read(void* target, std::size_t wanted) override {
        const std::size_t count = std::min(wanted, size - at);
        std::memcpy(target, bytes.get() + at, count);
        at += count;
        return count;
    }

    int Skip(std::size_t count) override {
        if (count > size - at)
            return -1;
        at += count;
        return 0;
    }

private:
    const std::unique_ptr<std::uint8_t, decltype(&std::free)> bytes;
    const std::size_t size;
    std::size_t at = 0;
};

using Fallback = std::function<std::unique_ptr<cctz::ZoneInfoSource>(const std::string&)>;

std::unique_ptr<cctz::ZoneInfoSource> browserZone(const std::string& name, const Fallback&) {
    std::size_t size = 0;
    std::uint8_t* const file = zoneFile(name.c_str(), &size);
    return file ? std::make_unique<BrowserZone>(file, size) : nullptr;
}

} // namespace

ZoneInfoSourceFactory zone_info_source_factory = browserZone;

} // namespace time_internal::cctz_extension
ABSL_NAMESPACE_END
} // namespace absl
