/// What all functions that the page's script calls have in common: a question and an answer, both
/// in JSON. The answer is {"result": ...}, or {"error": "..."} with what is wrong with the
/// question.
#pragma once

#include "night/trace.h"

#include <cstring>
#include <exception>
#include <nlohmann/json.hpp>
#include <string>

#include <emscripten.h>

namespace noctara {

/// The answer to `question`, by a function that takes Json and returns what converts to Json. The
/// script frees it.
template <typename Function>
char* answered(const char* question, Function function) {
    Json answer;
    try {
        answer["result"] = function(Json::parse(question));
    } catch (const std::exception& error) {
        answer = {{"error", error.what()}};
    }
    return ::strdup(answer.dump(-1, ' ', false, Json::error_handler_t::replace).c_str());
}

} // namespace noctara
