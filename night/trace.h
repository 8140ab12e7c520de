/// The trace: JSON Lines, one line for every call that the monitor makes and for everything that
/// happens to the phone. docs/trace.md describes it.
#pragma once

#include "phones/model/phone_observer.h"

#include <ostream>

namespace noctara {

class TraceWriter final : public PhoneObserver {
public:
    /// The stream must outlive the writer.
    explicit TraceWriter(std::ostream& lines) : out(lines) {}

    void called(const Call& call) override;
    void happens(const Happening& happening) override;

private:
    std::ostream& out;
};

} // namespace noctara
