/// The error for a file or an option of the user that cannot be used.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace noctara {

/// The text is one line for the user: "FILE:LINE:COLUMN: what is wrong; what is accepted", without
/// the parts of the position that are not known.
class BadInput : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// `text` in quotes, cut after 40 bytes. A question mark replaces each character that
/// controls a terminal and each byte that is not UTF-8.
std::string inQuotes(std::string_view text);

} // namespace noctara
