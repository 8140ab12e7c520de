/// What the dynamic loader runs when the library is loaded into a process. A program that is linked
/// with the core instead of loading it calls `NoctaraInitialize` itself.
#include "host/host.h"

namespace noctara {

namespace {

[[gnu::constructor]] void load() {
    NoctaraInitialize();
}

} // namespace

} // namespace noctara
