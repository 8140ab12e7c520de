#include "phones/replay/answers.h"

namespace noctara {

namespace {

/// A result in the form for observers.
class Result {
public:
    explicit Result(const Json& json) {
        if (json.is_boolean())
            value = json.get<bool>();
        else if (json.is_number_integer())
            value = json.get<std::int64_t>();
        else if (json.is_number())
            value = json.get<double>();
        else if (json.is_string())
            value = std::string_view(json.get_ref<const std::string&>());
        else if (!json.is_null())
            value = &list.emplace(propertyListOf(json));
    }

    Result(const Result&) = delete;
    Result& operator=(const Result&) = delete;

    CallValue value;

private:
    std::optional<PropertyList> list;
};

} // namespace

void Answers::tell(const Happening& happening) const {
    for (auto* observer : observers)
        observer->happens(happening);
}

Answers::Answers(TracePlayer& lines) : player(lines) {
    player.tookLogLine = [this](const TraceLine& line) {
        const auto text = std::get<TracedCall>(line.what).arguments.at(0).get<std::string>();
        const CallValue argument = std::string_view(text);
        tell(line, {&argument, 1});
    };
}

void Answers::tell(const TraceLine& line, std::span<const CallValue> arguments) const {
    const auto& call = std::get<TracedCall>(line.what);
    const Result result(call.result);
    for (auto* observer : observers)
        observer->called({line.at, line.onMainThread, call.operation, arguments,
                          call.result.is_null() ? nullptr : &result.value});
}

Json Answers::json(Operation operation, Arguments arguments) const {
    const TraceLine line = player.take(operation, arguments);
    tell(line, arguments);
    return std::get<TracedCall>(line.what).result;
}

bool Answers::yes(Operation operation, Arguments arguments) const {
    const Json result = json(operation, arguments);
    return result.is_boolean() && result.get<bool>();
}

std::int64_t Answers::integer(Operation operation, Arguments arguments) const {
    const Json result = json(operation, arguments);
    return result.is_number_integer() ? result.get<std::int64_t>() : 0;
}

double Answers::real(Operation operation, Arguments arguments) const {
    const Json result = json(operation, arguments);
    return result.is_number() ? result.get<double>() : 0;
}

std::string Answers::text(Operation operation, Arguments arguments) const {
    const Json result = json(operation, arguments);
    return result.is_string() ? result.get<std::string>() : std::string();
}

std::vector<std::string> Answers::texts(Operation operation, Arguments arguments) const {
    std::vector<std::string> found;
    for (const Json& item : json(operation, arguments))
        if (item.is_string())
            found.push_back(item.get<std::string>());
    return found;
}

} // namespace noctara
