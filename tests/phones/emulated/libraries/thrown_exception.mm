#include <stdexcept>

namespace {

[[gnu::constructor]] void throwIt() {
    throw std::length_error("nobody catches it");
}

} // namespace
