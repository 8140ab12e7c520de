#include "tests/call_log.h"

#include "night/trace.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>
#include <utility>

namespace noctara {

namespace {

template <typename Method, typename Subject>
CallLog::Line lineOf(Method method, const Subject& subject) {
    std::ostringstream out;
    TraceWriter writer(out);
    (writer.*method)(subject);
    const auto json = Json::parse(out.str());
    CallLog::Line line{json["t"], json["thread"], json.value("op", ""), json.value("op", ""),
                       json.dump()};
    if (line.operation.empty())
        line.text = "event " + json["event"].get<std::string>() + ' ' + json["args"].dump();
    else if (json.contains("args"))
        line.text += ' ' + json["args"].dump();
    if (json.contains("result"))
        line.text += " -> " + json["result"].dump();
    return line;
}

template <typename Predicate>
std::vector<std::string> texts(const std::vector<CallLog::Line>& lines, Predicate wanted) {
    std::vector<std::string> found;
    for (const auto& line : lines)
        if (wanted(line))
            found.push_back(line.text);
    return found;
}

} // namespace

Json CallLog::Line::parsed() const {
    return Json::parse(json);
}

std::string CallLog::Line::argument(std::size_t index) const {
    const Json line = parsed();
    const auto arguments = line.find("args");
    const bool isText =
        arguments != line.end() && index < arguments->size() && (*arguments)[index].is_string();
    return isText ? (*arguments)[index].get<std::string>() : std::string();
}

void CallLog::called(const Call& call) {
    lines.push_back(lineOf(&TraceWriter::called, call));
}

void CallLog::happens(const Happening& happening) {
    lines.push_back(lineOf(&TraceWriter::happens, happening));
}

std::vector<std::string> CallLog::calls() const {
    return texts(lines, [](const Line& line) { return line.operation != "NSLog"; });
}

std::vector<std::string> CallLog::of(const std::vector<std::string>& operations) const {
    return texts(lines, [&](const Line& line) {
        return std::find(operations.begin(), operations.end(), line.operation) != operations.end();
    });
}

std::size_t CallLog::count(const std::string& operation) const {
    return of({operation}).size();
}

std::vector<std::string> CallLog::logged() const {
    std::vector<std::string> found;
    for (const auto& line : lines)
        if (line.operation == "NSLog")
            found.push_back(line.argument(0));
    return found;
}

bool CallLog::hasLogged(const std::string& text) const {
    const auto found = logged();
    return std::find(found.begin(), found.end(), text) != found.end();
}

} // namespace noctara
