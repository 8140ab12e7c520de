/// The page of the report without data: report/page/dist/page.html, compiled into the program.
#pragma once

#include <string_view>

namespace noctara {

extern const std::string_view pageText;

} // namespace noctara
