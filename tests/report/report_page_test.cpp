/// The page of a report.
#include "report/page_text.h"
#include "report/recording_record.h"
#include "report/report_page.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>

namespace noctara {
namespace {

using testing::HasSubstr;
using testing::Not;

std::string pageWith(const Json& data) {
    std::ostringstream out;
    writeReportPage(out, data);
    return out.str();
}

/// The data in a page, read as its script reads them.
Json dataIn(const std::string& page) {
    const std::string opening = R"(<script type="application/json" id="data">)";
    const std::size_t from = page.find(opening) + opening.size();
    return Json::parse(page.substr(from, page.find("</script>", from) - from));
}

TEST(TheReportPage, holds_the_data) {
    const Json data{{"kind", "night"}, {"zone", "Europe/Paris"}};
    EXPECT_EQ(dataIn(pageWith(data)), data);
}

TEST(TheReportPage, holds_texts_that_look_like_html_as_they_are) {
    const std::string text = "</script><!--<script><img src=x onerror=alert(1)>";
    const std::string page = pageWith({{"text", text}});
    EXPECT_THAT(page, Not(HasSubstr("<img")));
    EXPECT_EQ(dataIn(page)["text"], text);
}

TEST(TheReportPage, replaces_what_is_not_utf_8) {
    EXPECT_EQ(dataIn(pageWith({{"text", "a\xff z"}}))["text"], "a\uFFFD z");
}

TEST(TheReportPage, forbids_the_network) {
    EXPECT_THAT(std::string(pageText), HasSubstr("default-src 'none'; script-src 'sha256-"));
}

Recording recordingOf(std::size_t samples) {
    Recording recording;
    for (std::size_t i = 0; i < samples; ++i)
        recording.samples.push_back({static_cast<double>(i) / 100, {0, 0, i == 5 ? 1.5 : 1.0}});
    return recording;
}

TEST(ARecordingForThePage, has_each_sample_of_a_short_one) {
    SensitivityAdvice found;
    found.outcome = SensitivityAdvice::Outcome::found;
    found.sensitivity = 4;
    const Json data = recordingForPage(recordingOf(3), "walk.csv", found);
    EXPECT_EQ(data["samples"], 3);
    EXPECT_EQ(data["samplesInGroup"], 1);
    EXPECT_EQ(data["times"], Json({0, 10, 10}));
    EXPECT_EQ(data["tilts"], Json::array({Json({0, 0, 0}), Json({0, 0, 0})}));
    EXPECT_EQ(data["screenDown"], Json({true, true, true}));
    EXPECT_EQ(data["suitable"], 4);
    EXPECT_EQ(data["tolerances"].size(), 10);
    EXPECT_EQ(data["verdict"], Json(linesOf(found)));
}

TEST(ARecordingForThePage, has_the_lowest_and_the_highest_of_groups_of_a_long_one) {
    const Json data = recordingForPage(recordingOf(10 * longestShownRecording), "long.csv", {});
    EXPECT_EQ(data["samplesInGroup"], 10);
    EXPECT_EQ(data["times"].size(), longestShownRecording);
    EXPECT_EQ(data["lengths"][0][0], 1);
    EXPECT_EQ(data["lengths"][1][0], 1.5);
    EXPECT_EQ(data["lengths"][1][1], 1);
}

TEST(ARecordingForThePage, has_no_suitable_sensitivity_without_an_advice) {
    Recording recording;
    recording.samples.push_back({0, {1, 0, 0}});
    EXPECT_EQ(recordingForPage(recording, "side.csv", {})["suitable"], nullptr);
}

} // namespace
} // namespace noctara
