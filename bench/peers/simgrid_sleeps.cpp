#include "bench/peers/peers.h"

#include <simgrid/s4u.hpp>

#include <array>
#include <string>

namespace noctara {

namespace {

/// The one host of the one engine that a process can have.
simgrid::s4u::Host* host(simgrid::s4u::Engine*& engine) {
    static std::string name = "bench";
    static std::array<char*, 2> arguments{name.data(), nullptr};
    static int count = 1;
    static simgrid::s4u::Engine made(&count, arguments.data());
    static simgrid::s4u::Host* const one = [] {
        auto* const zone = simgrid::s4u::create_full_zone("zone");
        auto* const created = zone->create_host("host", 1e9);
        zone->seal();
        return created;
    }();
    engine = &made;
    return one;
}

} // namespace

void runSleepsOfSimGrid(std::int64_t count) {
    simgrid::s4u::Engine* engine = nullptr;
    simgrid::s4u::Actor::create("sleeper", host(engine), [count] {
        for (std::int64_t i = 0; i < count; ++i)
            simgrid::s4u::this_actor::sleep_for(1);
    });
    engine->run();
}

} // namespace noctara
