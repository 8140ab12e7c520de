#include <new>

namespace {

[[gnu::constructor]] void readFreed() {
    auto* const bytes = static_cast<volatile char*>(::operator new(10));
    ::operator delete(const_cast<char*>(bytes));
    bytes[0];
}

} // namespace
