#include <cstring>

namespace {

const char text[] = "text";

[[gnu::constructor]] void changeAConstant() {
    const char* volatile place = text;
    std::strcmp(place, "");
    *const_cast<volatile char*>(const_cast<const volatile char*>(place)) = 'T';
}

} // namespace
