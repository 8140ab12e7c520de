#include "bench/peers/peers.h"

#include <ns3/core-module.h>

namespace noctara {

namespace {

std::int64_t left = 0;

void happen() {
    if (--left > 0)
        ns3::Simulator::Schedule(ns3::Seconds(1), &happen);
}

} // namespace

void runEventsOfNs3(std::int64_t count) {
    left = count;
    ns3::Simulator::Schedule(ns3::Seconds(1), &happen);
    ns3::Simulator::Run();
    ns3::Simulator::Destroy();
}

} // namespace noctara
