/// A field that both SpringBoard's main thread and the monitor thread access.
#pragma once

#include <atomic>

namespace noctara {

/// Reads and writes like a plain `T`. Each load and store is a relaxed atomic operation. It costs
/// no more than a plain access and guarantees no order among fields, so a cycle of the monitor may
/// see a mix of old and new settings.
template <typename T>
class SharedField {
public:
    SharedField(T initial = T{}) : value(initial) {}

    operator T() const { return value.load(std::memory_order_relaxed); }

    SharedField& operator=(T written) {
        value.store(written, std::memory_order_relaxed);
        return *this;
    }

    SharedField(const SharedField&) = delete;
    SharedField& operator=(const SharedField&) = delete;

private:
    std::atomic<T> value;
};

} // namespace noctara
