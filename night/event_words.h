/// An event, in the words of a story.
#pragma once

#include "phones/model/event.h"

#include <string>

namespace noctara {

/// One sentence. Empty for a power message, which a story tells together with its answer.
std::string eventInWords(const Event& event);

} // namespace noctara
