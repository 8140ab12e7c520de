/// The functions that the page's script calls. Each takes a text and returns JSON that the caller
/// frees: {"result": ...}, or {"error": "..."} with what is wrong with the text.
#include "command/night_player.h"
#include "night/scenario_file.h"
#include "night/trace.h"

#include <cstring>
#include <exception>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>

#include <emscripten.h>

namespace noctara {

namespace {

char* copyForScript(const Json& answer) {
    const std::string text = answer.dump(-1, ' ', false, Json::error_handler_t::replace);
    return ::strdup(text.c_str());
}

template <typename Function>
char* answer(Function function) {
    try {
        return copyForScript({{"result", function()}});
    } catch (const std::exception& error) {
        return copyForScript({{"error", error.what()}});
    }
}

std::string traceOf(const Scenario& scenario) {
    const NightInput input{scenario, nullptr, {}};
    std::ostringstream lines;
    TraceWriter trace(lines);
    const auto phone = makePhone(input);
    phone->observe(trace);
    playNight(*phone);
    return lines.str();
}

} // namespace

} // namespace noctara

extern "C" {

EMSCRIPTEN_KEEPALIVE char* traceOfNight(const char* scenario) {
    using namespace noctara;
    return answer([&] { return traceOf(parseScenario(scenario, "the scenario")); });
}

} // extern "C"
