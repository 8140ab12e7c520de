/// What every tool throws when a file or an option of the user's cannot be used.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace noctara {

/// Its text is the one line for the user: "FILE:LINE:COLUMN: what is wrong; what would do", with as
/// much of the place as is known.
class BadInput : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// `text` between quotes, cut to a readable length; each control character, and each byte that is
/// no UTF-8, is a question mark.
std::string inQuotes(std::string_view text);

} // namespace noctara
