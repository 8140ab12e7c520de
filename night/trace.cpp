#include "night/trace.h"

#include <cmath>
#include <nlohmann/json.hpp>

namespace noctara {

namespace {

using Json = nlohmann::ordered_json;

/// A whole number of seconds is written without a fraction.
Json number(double value) {
    constexpr double exactIntegers = 9007199254740992.0;
    if (std::floor(value) == value && std::abs(value) < exactIntegers)
        return static_cast<std::int64_t>(value);
    return value;
}

std::string base64(const Data& data) {
    constexpr std::string_view digits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t i = 0; i < data.size(); i += 3) {
        const auto byte = [&](std::size_t k) { return i + k < data.size() ? data[i + k] : 0U; };
        const unsigned group = (byte(0) << 16) | (byte(1) << 8) | byte(2);
        for (unsigned k = 0; k < 4; ++k)
            text += i + k <= data.size() ? digits[(group >> (18 - 6 * k)) & 63] : '=';
    }
    return text;
}

Json json(const PropertyList& value);

Json json(const Dictionary& dictionary) {
    Json object = Json::object();
    for (const auto& [key, value] : dictionary)
        object[key] = json(value);
    return object;
}

struct ToJson {
    Json operator()(std::monostate) const { return nullptr; }
    Json operator()(bool value) const { return value; }
    Json operator()(std::int64_t value) const { return value; }
    Json operator()(double value) const { return number(value); }
    Json operator()(std::string_view value) const { return value; }
    Json operator()(const std::string& value) const { return value; }
    Json operator()(Date value) const { return Json{{"date", number(value.secondsSince1970)}}; }
    Json operator()(const Acceleration& value) const {
        return Json::array({value.x, value.y, value.z});
    }
    Json operator()(const PropertyList* value) const { return json(*value); }
    Json operator()(const Dictionary* value) const { return json(*value); }
    Json operator()(const Dictionary& value) const { return json(value); }
    Json operator()(const Data& value) const { return Json{{"data", base64(value)}}; }
    Json operator()(const Array& value) const {
        Json array = Json::array();
        for (const auto& item : value)
            array.push_back(json(item));
        return array;
    }
    Json operator()(std::span<const std::string> value) const {
        return Json(std::vector<std::string>(value.begin(), value.end()));
    }
};

Json json(const PropertyList& value) {
    return std::visit(ToJson(), value.variant());
}

void writeLine(std::ostream& out, const Json& line) {
    // Text that is no UTF-8 came with a file; it is shown as far as it can be.
    out << line.dump(-1, ' ', false, Json::error_handler_t::replace) << '\n';
}

} // namespace

void TraceWriter::called(const Call& call) {
    Json line{{"t", number(call.at.secondsSince1970)},
              {"thread", call.onMainThread ? "main" : "monitor"},
              {"op", call.operation}};
    if (!call.arguments.empty()) {
        Json& arguments = line["args"] = Json::array();
        for (const auto& argument : call.arguments)
            arguments.push_back(std::visit(ToJson(), argument));
    }
    if (call.result)
        line["result"] = std::visit(ToJson(), *call.result);
    writeLine(out, line);
}

void TraceWriter::happens(const Happening& happening) {
    writeLine(out, Json{{"t", number(happening.at.secondsSince1970)},
                        {"thread", "main"},
                        {"event", happening.action},
                        {"args", json(happening.value)}});
}

} // namespace noctara
