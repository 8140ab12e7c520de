/// Prints the random scenario of a seed: `noctara-random-scenario SEED`.
#include "soak/random_scenario.h"

#include <cstdlib>
#include <iostream>

int main(int count, char** arguments) {
    if (count != 2)
        return EXIT_FAILURE;
    std::cout << noctara::randomScenario(std::strtoull(arguments[1], nullptr, 10));
}
