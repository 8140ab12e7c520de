/// Several observers of the monitor.
#pragma once

#include "monitor/decisions.h"

#include <initializer_list>
#include <vector>

namespace noctara {

class MonitorObservers final : public MonitorObserver {
public:
    /// The observers are told in this order. They must outlive this object.
    MonitorObservers(std::initializer_list<MonitorObserver*> first) : observers(first) {}

    void add(MonitorObserver& observer) { observers.push_back(&observer); }

    void decided(const Decision& decision) override {
        for (auto* observer : observers)
            observer->decided(decision);
    }

private:
    std::vector<MonitorObserver*> observers;
};

} // namespace noctara
