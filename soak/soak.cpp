#include "soak/soak.h"

#include "input/bad_input.h"
#include "night/scenario_file.h"
#include "night/scenario_text.h"
#include "night/scenario_times.h"
#include "soak/child_process.h"
#include "soak/random_scenario.h"
#include "soak/shrink.h"

#include <fmt/format.h>

#include <atomic>
#include <chrono>
#include <new>
#include <span>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/wait.h>
#include <thread>
#include <vector>

namespace noctara {

namespace {

using namespace std::chrono_literals;

/// One value of the type in memory that this process shares with its children.
template <typename Type>
class Shared {
public:
    Shared() :
        memory(mmap(nullptr, sizeof(Type), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1,
                    0)) {
        if (memory == MAP_FAILED)
            throw std::bad_alloc();
        new (memory) Type();
    }
    ~Shared() { munmap(memory, sizeof(Type)); }
    Shared(const Shared&) = delete;
    Shared& operator=(const Shared&) = delete;

    Type& operator*() const { return *static_cast<Type*>(memory); }
    Type* operator->() const { return static_cast<Type*>(memory); }

private:
    void* memory;
};

struct Worker {
    pid_t process = 0;
    std::atomic<std::uint64_t> night = 0; ///< The one that it plays.
    SoakCounts counts;
};

struct Work {
    std::atomic<std::uint64_t> begun = 0;
    std::atomic<std::uint64_t> played = 0;
    std::atomic<bool> ends = false;
    std::array<Worker, SoakPlan::mostJobs> workers;
};

void playNights(const SoakPlan& plan, const NightPlayer& play, Work& work, Worker& worker) {
    while (!work.ends) {
        const std::uint64_t night = work.begun++;
        if (night >= plan.nights)
            return;
        worker.night = night;
        limitTime();
        if (play(plan.seed + night, worker.counts))
            throw std::runtime_error("an invariant does not hold");
        ++work.played;
    }
}

void add(const SoakCounts& part, SoakCounts& sum) {
    for (std::size_t i = 0; i < SoakCounts::most; ++i) {
        sum.checks[i] += part.checks[i];
        sum.excuses[i] += part.excuses[i];
    }
    sum.nights += part.nights;
    sum.seconds += part.seconds;
    sum.timesQuiet += part.timesQuiet;
}

std::string commentOn(const Breach& breach, const Scenario& scenario, const std::string& name) {
    return fmt::format("{}, shortened. It breaks this invariant:\n"
                       "{}\n"
                       "On the phone's clock at {}: {}.\n"
                       "`noctara soak FILE` checks it, `noctara night FILE` tells its story.",
                       name, breach.invariant,
                       localText(TimeZone(scenario.timezone).components(breach.at)), breach.what);
}

} // namespace

Scenario randomNight(std::uint64_t seed) {
    return parseScenario(randomScenario(seed, NightLength::whole), fmt::format("seed {}", seed));
}

SoakResult soak(const SoakPlan& plan, const NightPlayer& play,
                const std::function<void(std::uint64_t)>& progress) {
    const Shared<Work> work;
    const std::span<Worker> workers(work->workers.data(), plan.jobs);
    for (Worker& worker : workers)
        worker.process = startChild([&] { playNights(plan, play, *work, worker); });

    SoakResult result;
    auto running = workers.size();
    while (running > 0) {
        int status = 0;
        const pid_t ended = waitpid(-1, &status, WNOHANG);
        if (ended <= 0) {
            std::this_thread::sleep_for(200ms);
            progress(work->played);
            continue;
        }
        --running;
        if (status == 0)
            continue;
        work->ends = true;
        for (const Worker& worker : workers)
            if (worker.process == ended)
                result.failed = std::min(result.failed.value_or(plan.seed + worker.night),
                                         plan.seed + worker.night);
    }
    for (const Worker& worker : workers)
        add(worker.counts, result.counts);
    return result;
}

std::string shortestFailure(const Scenario& scenario, const Breach& breach,
                            const std::string& name) {
    // What is kept is the file, so it is the file that has to fail.
    const auto playAsFile = [&](const Scenario& candidate) {
        return playApart(parseScenario(scenarioText(candidate), name));
    };
    const Scenario shortest = shrink(scenario, [&](const Scenario& candidate) {
        try {
            const auto found = playAsFile(candidate);
            return found && found->invariant == breach.invariant;
        } catch (const BadInput&) {
            return false;
        }
    });
    const auto found = playAsFile(shortest);
    if (!found)
        throw std::runtime_error(name + " fails, but not when it is written to a file");
    return scenarioText(shortest, commentOn(*found, shortest, name));
}

} // namespace noctara
