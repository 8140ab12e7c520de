#include "report/report_page.h"

#include "report/page_text.h"

#include <nlohmann/json.hpp>
#include <string>

namespace noctara {

void writeReportPage(std::ostream& out, const Json& data) {
    constexpr std::string_view placeholder = "{\"kind\":\"none\"}";
    const std::size_t place = pageText.find(placeholder);
    out << pageText.substr(0, place);
    // No text in the data can end the element of the page that holds them.
    for (const char c : data.dump(-1, ' ', false, Json::error_handler_t::replace))
        if (c == '<')
            out << "\\u003c";
        else
            out << c;
    out << pageText.substr(place + placeholder.size());
}

} // namespace noctara
