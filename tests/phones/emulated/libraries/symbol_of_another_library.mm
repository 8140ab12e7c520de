#include <sys/utsname.h>

namespace {

[[gnu::constructor]] void askForTheMachine() {
    utsname names;
    uname(&names);
}

} // namespace
