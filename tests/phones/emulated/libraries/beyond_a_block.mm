#include <new>

namespace {

[[gnu::constructor]] void writeBeyond() {
    auto* const bytes = static_cast<volatile char*>(::operator new(10));
    bytes[10] = 1;
}

} // namespace
