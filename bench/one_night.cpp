/// Plays a default night once, for scripts/bench-cycle.
#include "bench/default_night.h"
#include "phones/simulated/simulated_phone.h"

int main() {
    noctara::SimulatedPhone phone(noctara::defaultNight());
    phone.launch();
    phone.playToTheEnd();
}
