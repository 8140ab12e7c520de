/// What a test looks at: every call that the monitor made of the phone, in order, as text.
#pragma once

#include "phones/model/phone_observer.h"

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

namespace noctara {

class CallLog final : public PhoneObserver {
public:
    struct Line {
        double at;             ///< Seconds since 1970.
        std::string thread;    ///< "main" or "monitor".
        std::string operation; ///< Empty for an event.
        std::string text;      ///< `op`, `op [args]`, `op [args] -> result`; `event NAME VALUE`.
        std::string json;      ///< As the trace has it.

        /// For whoever includes the whole of the library's header.
        nlohmann::ordered_json parsed() const;
        /// An argument that is text; empty when there is none.
        std::string argument(std::size_t index) const;
    };

    void called(const Call& call) override;
    void happens(const Happening& happening) override;

    void clear() { lines.clear(); }

    /// The texts of all calls but log lines.
    std::vector<std::string> calls() const;

    /// The texts of the calls of these operations, in the order in which they were made.
    std::vector<std::string> of(const std::vector<std::string>& operations) const;

    std::size_t count(const std::string& operation) const;

    /// The texts of the system log.
    std::vector<std::string> logged() const;

    bool hasLogged(const std::string& text) const;

    std::vector<Line> lines;
};

} // namespace noctara
