/// The system log (`NSLog`).
#pragma once

#include <string>

namespace noctara {

class SystemLog {
public:
    virtual ~SystemLog() = default;

    /// Writes one finished line of UTF-8 text, without a line feed. Any thread.
    virtual void write(const std::string& text) = 0;
};

} // namespace noctara
