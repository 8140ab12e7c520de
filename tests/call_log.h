/// What a test looks at: every call that the monitor made of the phone, in order, as text.
#pragma once

#include "night/trace.h"
#include "phones/model/phone_observer.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>
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
        nlohmann::ordered_json json;
    };

    void called(const Call& call) override { keep(&TraceWriter::called, call); }
    void happens(const Happening& happening) override { keep(&TraceWriter::happens, happening); }

    void clear() { lines.clear(); }

    /// The texts of all calls but log lines.
    std::vector<std::string> calls() const {
        return texts([](const Line& line) { return line.operation != "NSLog"; });
    }

    /// The texts of the calls of these operations, in the order in which they were made.
    std::vector<std::string> of(const std::vector<std::string>& operations) const {
        return texts([&](const Line& line) {
            return std::find(operations.begin(), operations.end(), line.operation) !=
                   operations.end();
        });
    }

    std::size_t count(const std::string& operation) const { return of({operation}).size(); }

    /// The texts of the system log.
    std::vector<std::string> logged() const {
        std::vector<std::string> found;
        for (const auto& line : lines)
            if (line.operation == "NSLog")
                found.push_back(line.json["args"][0]);
        return found;
    }

    bool hasLogged(const std::string& text) const {
        const auto found = logged();
        return std::find(found.begin(), found.end(), text) != found.end();
    }

    std::vector<Line> lines;

private:
    template <typename Method, typename Subject>
    void keep(Method method, const Subject& subject) {
        std::ostringstream out;
        TraceWriter writer(out);
        (writer.*method)(subject);
        auto json = nlohmann::ordered_json::parse(out.str());
        Line line{json["t"], json["thread"], json.value("op", ""), json.value("op", ""), json};
        if (line.operation.empty())
            line.text = "event " + json["event"].get<std::string>() + ' ' + json["args"].dump();
        else if (json.contains("args"))
            line.text += ' ' + json["args"].dump();
        if (json.contains("result"))
            line.text += " -> " + json["result"].dump();
        lines.push_back(std::move(line));
    }

    template <typename Predicate>
    std::vector<std::string> texts(Predicate wanted) const {
        std::vector<std::string> found;
        for (const auto& line : lines)
            if (wanted(line))
                found.push_back(line.text);
        return found;
    }
};

} // namespace noctara
