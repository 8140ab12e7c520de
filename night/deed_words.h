/// The effect of a call on the phone, in the words of a story.
#pragma once

#include "phones/model/phone_observer.h"

#include <string>

namespace noctara {

/// A verb and its objects, such as "switches Wi-Fi off". Empty for a call that has no effect that
/// the user notices.
std::string deedInWords(const Call& call);

} // namespace noctara
