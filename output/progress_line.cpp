#include "output/progress_line.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <unistd.h>

namespace noctara {

namespace {

constexpr std::uint64_t width = 30;

/// Returns the cursor to the start of the line and erases the line.
constexpr const char* beginAgain = "\r\x1B[K";

} // namespace

ProgressLine::ProgressLine(std::uint64_t items) :
    total(items), isShown(isatty(STDERR_FILENO) == 1) {}

ProgressLine::~ProgressLine() {
    if (isShown)
        fmt::print(stderr, "{}", beginAgain);
}

void ProgressLine::show(std::uint64_t done, double seconds) const {
    if (!isShown)
        return;
    const auto full = static_cast<std::size_t>(done * width / total);
    fmt::print(stderr, "{}[{}{}] {} of {}", beginAgain, std::string(full, '#'),
               std::string(width - full, ' '), done, total);
    if (done == 0)
        return;
    const double rate = static_cast<double>(done) / seconds;
    const auto left = static_cast<std::int64_t>(static_cast<double>(total - done) / rate);
    fmt::print(stderr, ", {:.0f} a second, {:%H:%M:%S} left", rate, std::chrono::seconds(left));
}

} // namespace noctara
