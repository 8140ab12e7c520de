/// With debug off, a cycle of the monitor allocates no memory except for the phone's answers.
#include "platform/clock.h"
#include "platform/files.h"
#include "tests/a_night.h"

#include <cstdlib>
#include <new>

namespace {

bool counting = false;
std::size_t allocations = 0;

} // namespace

// Not inlined, or a compiler sees allocations that are not undone by their own kind.
[[gnu::noinline]] void* operator new(std::size_t size) {
    allocations += counting;
    if (void* memory = std::malloc(size == 0 ? 1 : size))
        return memory;
    throw std::bad_alloc();
}

[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace noctara {

namespace {

/// Counts the allocations of the core, not those of the phone.
class PhoneAtWork {
public:
    PhoneAtWork() : before(std::exchange(counting, false)) {}
    ~PhoneAtWork() { counting = before; }
    PhoneAtWork(const PhoneAtWork&) = delete;
    PhoneAtWork& operator=(const PhoneAtWork&) = delete;

private:
    bool before;
};

/// The files of a phone. The allocations of its answers are not counted; copies of them are.
class CountedFiles final : public Files {
public:
    explicit CountedFiles(Files& phoneFiles) : files(phoneFiles) {}

    bool exists(const std::string& path) override { return files.exists(path); }
    std::optional<Dictionary> readDictionary(const std::string& path) override {
        const PhoneAtWork phone;
        return files.readDictionary(path);
    }
    bool writeDictionary(const std::string& path, const Dictionary& dictionary) override {
        const PhoneAtWork phone;
        return files.writeDictionary(path, dictionary);
    }
    std::shared_ptr<const PropertyList> parse(const std::string& path,
                                              std::string& error) override {
        const PhoneAtWork phone;
        return files.parse(path, error);
    }

private:
    Files& files;
};

class CountedWakes final : public WakeScheduler {
public:
    explicit CountedWakes(WakeScheduler& phoneWakes) : wakes(phoneWakes) {}

    void schedule(Date date, const std::string& identifier) override {
        const PhoneAtWork phone;
        wakes.schedule(date, identifier);
        ++scheduled;
    }
    void cancel(Date date, const std::string& identifier) override {
        const PhoneAtWork phone;
        wakes.cancel(date, identifier);
    }

    int scheduled = 0;

private:
    WakeScheduler& wakes;
};

/// A clock that ends the monitor's loop after a number of seconds.
class CountedClock final : public Clock {
public:
    explicit CountedClock(NoctaraThread*& stopped) : monitor(stopped) {}

    std::int64_t time() override { return seconds; }
    Date now() override { return {static_cast<double>(seconds)}; }
    void sleep(unsigned slept) override {
        seconds += slept;
        // The start may allocate; the cycles after it may not.
        if (seconds == begin + 10)
            counting = true;
        if (seconds > begin + 1000) {
            counting = false;
            monitor->stop();
        }
    }

private:
    NoctaraThread*& monitor;
    static constexpr std::int64_t begin = 1393713000;
    std::int64_t seconds = begin;
};

std::size_t allocationsInCycles(Scenario scenario, Dictionary settings, int& scheduled) {
    scenario.settings = std::move(settings);
    SimulatedPhone phone(scenario);
    CountedFiles files(phone.files);
    CountedWakes wakes(phone.power);
    NoctaraThread* watched = nullptr;
    CountedClock clock(watched);
    Platform counted = phone.platform();
    counted.clock = &clock;
    counted.files = &files;
    counted.wakes = &wakes;
    NoctaraThread monitor(counted);
    watched = &monitor;
    allocations = 0;
    monitor.run();
    scheduled = wakes.scheduled;
    return allocations;
}

using AQuietNight = ANight;

TEST_F(AQuietNight, costs_the_core_no_allocation) {
    settings.set("ActiveOnSleep", true);
    settings.set("TimeLimit", true);
    int scheduled = 0;
    EXPECT_EQ(allocationsInCycles(scenario, settings, scheduled), 0U);
    EXPECT_GT(scheduled, 100) << "the cycles must have been whole ones";
}

TEST_F(AQuietNight, in_the_sleep_state_costs_the_core_no_allocation_either) {
    settings.set("ActiveOnSleep", true);
    scenario.phone.posture = NamedPosture::ScreenDown;
    scenario.radios.airplane = true;
    int scheduled = 0;
    EXPECT_EQ(allocationsInCycles(scenario, settings, scheduled), 0U);
    EXPECT_GT(scheduled, 100);
}

TEST_F(AQuietNight, with_debug_on_is_seen_to_allocate) {
    settings.set("Debug", true);
    int scheduled = 0;
    EXPECT_GT(allocationsInCycles(scenario, settings, scheduled), 1000U);
}

} // namespace

} // namespace noctara
