/// What happens to the phone, in the words of a story.
#pragma once

#include "phones/model/phone_observer.h"

#include <string>

namespace noctara {

/// One sentence. Not for power messages, which a story tells with their answers.
std::string happeningInWords(const Happening& happening);

} // namespace noctara
