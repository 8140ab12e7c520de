#include "tests/agreement/trace_difference.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <string_view>

namespace noctara {

namespace {

/// Its objects are sorted by key, because the order of the keys in a dictionary differs between the
/// phones.
using Json = nlohmann::json;

constexpr std::size_t linesBefore = 6;
constexpr std::size_t linesAfter = 3;

/// Log lines that the monitor writes for each key of the settings file, in the order of the phone's
/// dictionary. Consecutive ones are compared as a set.
constexpr std::array keyByKey{"This is an app=", "app to monitor : "};

/// The read of a variable, which the stand-in phone cannot record.
constexpr std::string_view readVariable = "kCFCoreFoundationVersionNumber";

Json parsed(const std::string& text, const std::string& name, std::size_t number) {
    Json line = Json::parse(text, nullptr, false);
    const auto isText = [&](const char* member) {
        const auto found = line.find(member);
        return found != line.end() && found->is_string();
    };
    if (!line.is_object() || !line.contains("t") || !isText("thread") ||
        isText("op") == isText("event"))
        throw BadTrace(name + ':' + std::to_string(number) + ": is no line of a trace: " + text);
    const auto& thread = line["thread"].get_ref<const std::string&>();
    if (thread != "main" && thread != "monitor")
        throw BadTrace(name + ':' + std::to_string(number) + ": there is no thread \"" + thread +
                       "\": " + text);
    return line;
}

/// The text that marks the line as one of those that are compared as a set; null if it is not.
const char* runOf(const ComparedLine& line) {
    for (const char* text : keyByKey)
        if (line.compared.find(std::string(R"("args":[")") + text) != std::string::npos &&
            line.compared.find(R"("op":"NSLog")") != std::string::npos)
            return text;
    return nullptr;
}

void sortRuns(std::vector<ComparedLine>& lines) {
    for (auto begin = lines.begin(); begin != lines.end();) {
        const char* const run = runOf(*begin);
        auto end = std::next(begin);
        while (run && end != lines.end() && runOf(*end) == run)
            ++end;
        std::sort(begin, end, [](const ComparedLine& one, const ComparedLine& other) {
            return one.compared < other.compared;
        });
        begin = end;
    }
}

void show(std::ostream& text, const Trace& trace, const std::vector<ComparedLine>& lines,
          std::size_t place) {
    text << "  " << trace.name << '\n';
    const std::size_t first = place - std::min(place, linesBefore);
    const std::size_t last = std::min(lines.size(), place + linesAfter + 1);
    for (std::size_t i = first; i < last; ++i)
        text << (i == place ? "  > " : "    ") << lines[i].number << ": " << lines[i].text << '\n';
    if (place >= lines.size())
        text << "  > (it ends here)\n";
}

/// The text is empty if there is none.
TraceDifference difference(const Trace& one, const Trace& other, const std::string& thread) {
    static const std::vector<ComparedLine> none;
    const auto linesOf = [&](const Trace& trace) -> const std::vector<ComparedLine>& {
        const auto found = trace.order.find(thread);
        return found == trace.order.end() ? none : found->second;
    };
    const auto& ones = linesOf(one);
    const auto& others = linesOf(other);
    const auto [at, otherAt] =
        std::mismatch(ones.begin(), ones.end(), others.begin(), others.end(),
                      [](const auto& a, const auto& b) { return a.compared == b.compared; });
    if (at == ones.end() && otherAt == others.end())
        return {};

    const auto place = static_cast<std::size_t>(at - ones.begin());
    std::ostringstream text;
    text << "the traces differ"
         << (thread.empty() ? "" : " in what the thread \"" + thread + "\" does") << ", after "
         << place << " lines that agree:\n";
    show(text, one, ones, place);
    show(text, other, others, place);
    return {text.str(), otherAt == others.end() ? 0 : otherAt->number};
}

} // namespace

Trace readTrace(std::istream& lines, const std::string& name, TraceOrder order) {
    Trace trace;
    trace.name = name;
    for (std::string text; std::getline(lines, text);) {
        Json line = parsed(text, name, ++trace.lines);
        if (line.contains("op") && line["op"] == readVariable)
            continue;
        std::string thread;
        if (order == TraceOrder::perThread) {
            thread = line["thread"].get<std::string>();
            line.erase("thread");
            line.erase("t");
        }
        trace.order[thread].push_back({trace.lines, std::move(text), line.dump()});
    }
    for (auto& [thread, itsLines] : trace.order)
        sortRuns(itsLines);
    return trace;
}

std::optional<TraceDifference> traceDifference(const Trace& one, const Trace& other) {
    std::set<std::string> threads;
    for (const Trace* trace : {&one, &other})
        for (const auto& [thread, lines] : trace->order)
            threads.insert(thread);
    TraceDifference all{};
    for (const auto& thread : threads) {
        const auto [text, otherLine] = difference(one, other, thread);
        if (all.text.empty())
            all.otherLine = otherLine;
        all.text += text;
    }
    return all.text.empty() ? std::nullopt : std::optional(all);
}

} // namespace noctara
