/// A progress bar with the rate and the time left, on one line of the terminal.
#pragma once

#include <cstdint>

namespace noctara {

/// Shows it on standard error while it lives, if that is a terminal.
class ProgressLine {
public:
    explicit ProgressLine(std::uint64_t total);
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    void show(std::uint64_t done, double seconds) const;

private:
    const std::uint64_t total;
    const bool isShown;
};

} // namespace noctara
