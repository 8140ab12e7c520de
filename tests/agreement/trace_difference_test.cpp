/// Which traces agree, and how a difference is described.
#include "tests/agreement/trace_difference.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace noctara {

namespace {

using testing::AllOf;
using testing::HasSubstr;

const std::string reads =
    R"({"t":1,"thread":"monitor","op":"initWithContentsOfFile:","args":["/a"],"result":{"A":1,"B":{"C":2,"D":3}}})"
    "\n";
const std::string readsInOtherOrder =
    R"({"t":1,"thread":"monitor","op":"initWithContentsOfFile:","args":["/a"],"result":{"B":{"D":3,"C":2},"A":1}})"
    "\n";

std::string line(int t, const std::string& thread, const std::string& operation,
                 const std::string& arguments) {
    return R"({"t":)" + std::to_string(t) + R"(,"thread":")" + thread + R"(","op":")" + operation +
           R"(","args":)" + arguments + "}\n";
}

std::string logged(const std::string& text, const std::string& thread = "monitor", int t = 1) {
    return line(t, thread, "NSLog", "[\"" + text + "\"]");
}

std::string sleeps(int seconds, int t = 1) {
    return line(t, "monitor", "sleep", "[" + std::to_string(seconds) + "]");
}

std::string event(const std::string& posture, int t = 1) {
    return R"({"t":)" + std::to_string(t) + R"(,"thread":"main","event":"posture","args":")" +
           posture + "\"}\n";
}

std::string difference(const std::string& one, const std::string& other,
                       TraceOrder order = TraceOrder::perThread) {
    std::istringstream ones(one);
    std::istringstream others(other);
    const auto difference =
        traceDifference(readTrace(ones, "one", order), readTrace(others, "other", order));
    return difference ? difference->text : "";
}

std::string refusal(const std::string& text) {
    std::istringstream lines(text);
    try {
        readTrace(lines, "one", TraceOrder::perThread);
    } catch (const BadTrace& error) {
        return error.what();
    }
    return "";
}

TEST(TwoTraces, agree_when_they_are_the_same) {
    const std::string trace = reads + event("in-hand") + sleeps(1) + logged("x", "main");
    EXPECT_EQ(difference(trace, trace), "");
    EXPECT_EQ(difference(trace, trace, TraceOrder::whole), "");
}

TEST(TwoTraces, differ_in_one_argument) {
    const std::string text =
        difference(sleeps(1) + sleeps(2) + sleeps(3), sleeps(1) + sleeps(4) + sleeps(3));
    EXPECT_THAT(text, AllOf(HasSubstr("the thread \"monitor\""), HasSubstr("after 1 lines"),
                            HasSubstr("  one\n    1: " + sleeps(1) + "  > 2: " + sleeps(2) +
                                      "    3: " + sleeps(3)),
                            HasSubstr("  other\n    1: " + sleeps(1) + "  > 2: " + sleeps(4))));
}

TEST(TwoTraces, differ_in_one_result) {
    const std::string other = R"({"t":1,"thread":"main","op":"isOnAC","result":true})";
    EXPECT_NE(difference(R"({"t":1,"thread":"main","op":"isOnAC","result":false})", other), "");
    EXPECT_NE(difference(R"({"t":1,"thread":"main","op":"isOnAC","result":1})", other), "");
    EXPECT_NE(difference(R"({"t":1,"thread":"main","op":"isOnAC"})", other), "");
}

TEST(TwoTraces, differ_when_the_last_line_of_one_is_missing) {
    EXPECT_THAT(difference(sleeps(1) + sleeps(2), sleeps(1)),
                HasSubstr("  other\n    1: " + sleeps(1) + "  > (it ends here)"));
    EXPECT_THAT(difference(sleeps(1), sleeps(1) + sleeps(2)),
                HasSubstr("  other\n    1: " + sleeps(1) + "  > 2: " + sleeps(2)));
}

TEST(TwoTraces, differ_when_one_of_them_lacks_a_thread) {
    EXPECT_THAT(difference(sleeps(1) + event("moving"), sleeps(1)),
                HasSubstr("the thread \"main\""));
    EXPECT_NE(difference("", sleeps(1)), "");
}

TEST(TwoTraces, differ_when_another_thread_does_it) {
    EXPECT_NE(difference(logged("x", "main"), logged("x", "monitor")), "");
}

TEST(TwoTraces, differ_when_an_event_is_missing_or_comes_at_another_place) {
    const std::string call = logged("x", "main");
    EXPECT_NE(difference(event("moving") + call, call), "");
    EXPECT_NE(difference(event("moving") + call, call + event("moving")), "");
    EXPECT_NE(difference(event("moving"), event("none")), "");
}

TEST(TwoTraces, agree_whatever_the_order_of_the_keys_in_a_dictionary_is) {
    ASSERT_NE(reads, readsInOtherOrder);
    EXPECT_EQ(difference(reads, readsInOtherOrder), "");
    EXPECT_EQ(difference(reads, readsInOtherOrder, TraceOrder::whole), "");
}

TEST(TwoTraces, differ_in_the_order_of_an_array) {
    EXPECT_NE(difference(line(1, "main", "process", "[1,2]"), line(1, "main", "process", "[2,1]")),
              "");
}

TEST(TwoTraces, agree_whatever_the_order_of_the_lines_for_each_key_is) {
    const std::string a = logged("This is an app=launch-app-a adding to array");
    const std::string b = logged("This is an app=launch-app-b adding to array");
    const std::string both = logged("2 apps to monitor");
    const std::string listedA = logged("app to monitor : a");
    const std::string listedB = logged("app to monitor : b");
    EXPECT_EQ(difference(a + b + both + listedA + listedB, b + a + both + listedB + listedA), "");
    EXPECT_NE(difference(a + b, a + a), "");
    EXPECT_NE(difference(a + b, a), "");
    EXPECT_NE(difference(a + both + b, b + both + a), "") << "no run goes across another line";
    EXPECT_NE(difference(a + listedA, listedA + a), "") << "the two kinds are runs of their own";
}

TEST(TwoTraces, differ_in_the_order_of_other_log_lines) {
    EXPECT_NE(difference(logged("x") + logged("y"), logged("y") + logged("x")), "");
}

TEST(TwoTraces, agree_when_one_of_them_does_not_see_a_variable_being_read) {
    const std::string version =
        R"({"t":1,"thread":"main","op":"kCFCoreFoundationVersionNumber","result":793})"
        "\n";
    EXPECT_EQ(difference(version + sleeps(1), sleeps(1)), "");
    EXPECT_EQ(difference(version + sleeps(1), sleeps(1), TraceOrder::whole), "");
}

TEST(TwoTraces, are_compared_thread_by_thread_with_the_times_aside) {
    const std::string one = logged("x", "main", 1) + sleeps(1, 1);
    const std::string other = sleeps(1, 2) + logged("x", "main", 2);
    EXPECT_EQ(difference(one, other), "");
}

TEST(TwoTraces, compared_as_a_whole_differ_in_the_order_across_threads_and_in_the_times) {
    const std::string one = logged("x", "main") + sleeps(1);
    EXPECT_NE(difference(one, sleeps(1) + logged("x", "main"), TraceOrder::whole), "");
    EXPECT_NE(difference(sleeps(1, 1), sleeps(1, 2), TraceOrder::whole), "");
}

TEST(TwoTraces, are_both_told_of_where_both_threads_differ) {
    EXPECT_THAT(difference(sleeps(1) + event("moving"), sleeps(2) + event("none")),
                AllOf(HasSubstr("the thread \"main\""), HasSubstr("the thread \"monitor\"")));
}

TEST(ATrace, counts_all_its_lines) {
    std::istringstream lines(reads + event("none") + sleeps(1));
    EXPECT_EQ(readTrace(lines, "one", TraceOrder::perThread).lines, 3U);
}

TEST(ATrace, is_refused_with_a_line_that_is_not_one) {
    EXPECT_THAT(refusal(sleeps(1) + R"({"t":1,"thre)"), HasSubstr("one:2: is no line"));
    EXPECT_NE(refusal("\n"), "");
    EXPECT_NE(refusal("[1]\n"), "");
    EXPECT_NE(refusal(R"({"t":1,"thread":"main"})"), "");
    EXPECT_NE(refusal(R"({"thread":"main","op":"uname"})"), "");
    EXPECT_NE(refusal(R"({"t":1,"thread":"main","op":"uname","event":"posture"})"), "");
    EXPECT_THAT(refusal(R"({"t":1,"thread":"worker","op":"uname"})"),
                HasSubstr("there is no thread \"worker\""));
    EXPECT_EQ(refusal(sleeps(1)), "");
}

} // namespace

} // namespace noctara
