#include "page/script_functions.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <exception>
#include <new>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <string_view>

#include <emscripten.h>

namespace noctara {

namespace {

struct ScriptFunction {
    std::string_view name;
    Json (*answer)(const Json&);
};

constexpr std::array functions{
    ScriptFunction{"scenario", scenarioOf},
    ScriptFunction{"night", nightOf},
    ScriptFunction{"traceOfNight", traceOf},
    ScriptFunction{"recording", recordingOf},
    ScriptFunction{"settings", settingsOf},
    ScriptFunction{"changeSetting", changedSettingsOf},
    ScriptFunction{"makeSettings", newSettingsOf},
};

Json answerOf(std::string_view name, const char* question) {
    const auto function =
        std::find_if(functions.begin(), functions.end(),
                     [&](const ScriptFunction& known) { return known.name == name; });
    if (function == functions.end())
        throw std::invalid_argument("there is no function " + std::string(name));
    return function->answer(Json::parse(question));
}

} // namespace

} // namespace noctara

/// Answers a question in JSON: {"result": ...}, or {"error": "..."} with what is wrong with it. The
/// script frees the answer.
extern "C" EMSCRIPTEN_KEEPALIVE char* ask(const char* function, const char* question) {
    using noctara::Json;
    Json answer;
    try {
        answer["result"] = noctara::answerOf(function, question);
    } catch (const std::bad_alloc&) {
        answer = {{"error", "The memory of this browser is not enough for this."}};
    } catch (const std::exception& error) {
        answer = {{"error", error.what()}};
    }
    return ::strdup(answer.dump(-1, ' ', false, Json::error_handler_t::replace).c_str());
}
