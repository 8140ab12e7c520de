/// `noctara night --live` in a terminal, which tmux provides.
#include "tests/a_terminal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <string>
#include <thread>

namespace {

using noctara::Played;

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class InATerminal : public noctara::ATerminal {
protected:
    void begin(const std::string& arguments = "--speed 60") {
        enter("clear; noctara night --live " + arguments);
        waitFor("q quit");
    }

    /// The shell waits for a command, and the program has left the terminal as it was.
    void expectThePrompt(int exitCode) {
        const auto shown = waitFor("exit " + std::to_string(exitCode) + " " + prompt + " ready>");
        EXPECT_THAT(shown, Not(HasSubstr("q quit")));
        EXPECT_EQ(tmux("display -p '#{alternate_on} #{cursor_flag} #{keypad_flag}'"), "0 1 0\n");
    }

    void expectTheShellAgain(int exitCode) {
        expectThePrompt(exitCode);
        enter("echo still $((6 * 7))");
        waitFor("still 42");
    }

    std::string processOfTheNight() {
        return noctara::run("pgrep -P $(tmux -S '" + (folder.path / "socket").string() +
                            "' display -p '#{pane_pid}')")
            .output;
    }

    void send(const std::string& signal) {
        noctara::run("kill -" + signal + " " + processOfTheNight());
    }
};

TEST_F(InATerminal, the_live_night_fills_80_by_24) {
    open();
    begin();
    const auto shown = waitFor("SpringBoard has launched");
    EXPECT_THAT(shown, StartsWith(" Noctara  Saturday, 1 March 2014  22:"));
    for (const char* text :
         {"Posture       in the hand 143.1°  ~", "State         ", "Airplane mode off", "─ Story ─",
          "Applications  none", "Space pause", "? help", "q quit"})
        EXPECT_THAT(shown, HasSubstr(text));
    EXPECT_EQ(std::count(shown.begin(), shown.end(), '\n'), 24);
    type("q");
    expectTheShellAgain(0);
}

TEST_F(InATerminal, the_live_night_is_shortened_at_60_by_20_and_says_when_it_is_too_small) {
    open(60, 20);
    begin();
    EXPECT_THAT(waitFor("SpringBoard"), AllOf(StartsWith(" Saturday, 1 March"),
                                              HasSubstr("Cell data on"), HasSubstr("q quit")));
    tmux("resize-window -x 59 -y 20");
    EXPECT_THAT(waitFor("Too small: 60 by 20 at least."), Not(HasSubstr("Posture")));
    tmux("resize-window -x 100 -y 30");
    waitFor("Noctara  Saturday");
    type("q");
    expectTheShellAgain(0);
}

TEST_F(InATerminal, the_keys_act_on_the_phone_and_the_summary_is_printed_at_the_end) {
    open();
    begin("--speed 1");
    type("Space d");
    waitFor("The phone is laid down, screen down.");
    type("n n n n");
    waitFor("Airplane mode on");
    type("c");
    waitFor("Charger       plugged in");
    type("s");
    waitFor("time stands still");
    type("Escape '?'");
    waitFor("lay down, screen up");
    type("x e");
    const auto shown = waitFor("Figures of 9 h 30 min");
    EXPECT_THAT(shown, AllOf(HasSubstr("  quiet  "), Not(HasSubstr("is laid down"))));
    expectTheShellAgain(0);
}

TEST_F(InATerminal, the_night_that_ends_by_itself_has_the_exit_code_of_the_night) {
    open();
    enter("clear; noctara night scenarios/held-during-a-call.toml --live --speed 86400");
    waitFor("Not back: the data rate is 2G since 06:50:05");
    expectTheShellAgain(1);
}

TEST_F(InATerminal, interruptions_leave_the_terminal_as_it_was) {
    open();
    begin();
    type("C-c");
    expectTheShellAgain(130);
    for (const auto& [signal, exitCode] :
         {std::pair("TERM", 143), std::pair("HUP", 129), std::pair("QUIT", 131)}) {
        begin();
        send(signal);
        expectTheShellAgain(exitCode);
    }
}

TEST_F(InATerminal, an_error_during_the_night_leaves_the_terminal_as_it_was) {
    open();
    std::ofstream(folder.path / "spin.toml")
        << "[settings]\nEnabled = false\nScanInterval = 1\n[[event]]\nat = 23:00:00\n"
           "settings = { ScanInterval = 0 }\n";
    enter("clear; noctara night --live --speed 3600 " + (folder.path / "spin.toml").string());
    waitFor("Something is wrong: the night ended early: the monitor loops");
    expectTheShellAgain(1);
}

TEST_F(InATerminal, a_stopped_night_gives_the_terminal_back_and_goes_on) {
    open();
    begin();
    type("C-z");
    expectThePrompt(148);
    enter("clear; fg");
    waitFor("q quit");
    type("q");
    expectTheShellAgain(0);
}

TEST_F(InATerminal, the_trace_is_that_of_a_night_that_is_played_at_once) {
    open();
    const auto scenario = std::string(" scenarios/applications.toml --trace ");
    const auto live = (folder.path / "live.jsonl").string();
    const auto plain = (folder.path / "plain.jsonl").string();
    enter("clear; noctara night --live --speed 86400" + scenario + live);
    waitFor("Figures of");
    expectTheShellAgain(0);
    noctara::run("'" NOCTARA_COMMAND "' night" + scenario + plain);
    EXPECT_EQ(noctara::run("cmp " + live + " " + plain + " 2>&1").output, "");
}

TEST_F(InATerminal, colours_are_used_unless_they_are_refused) {
    open();
    begin();
    waitFor("SpringBoard");
    const std::string green = "\x1b[32m";
    EXPECT_THAT(tmux("capture-pane -e -p"), HasSubstr(green));
    type("q");
    expectTheShellAgain(0);
    enter("clear; export NO_COLOR=1; noctara night --live");
    waitFor("SpringBoard");
    EXPECT_THAT(tmux("capture-pane -e -p"), Not(HasSubstr(green)));
}

TEST_F(InATerminal, a_terminal_without_utf_8_gets_ascii) {
    open();
    enter("clear; LC_ALL=C noctara night --live");
    EXPECT_THAT(waitFor("SpringBoard"), AllOf(HasSubstr("in the hand 143.1o  ~"),
                                              HasSubstr("Wi-Fi         on                  =")));
}

TEST_F(InATerminal, what_cannot_be_shown_is_refused) {
    open();
    enter("clear; TERM=dumb noctara night --live");
    waitFor("cannot show screens");
    expectTheShellAgain(2);
    enter("clear; TERM=none-such noctara night --live");
    waitFor("the terminal type \"none-such\" is unknown");
    expectTheShellAgain(2);
    enter("clear; noctara night --live --trace /dev/tty");
    waitFor("/dev/tty");
    expectTheShellAgain(2);
}

TEST(TheLiveNight, is_refused_without_a_terminal) {
    for (const char* arguments : {"night --live < /dev/null 2>&1", "night --live 2>&1 | cat"}) {
        const Played outcome = noctara::run("bash -o pipefail -c \"'" NOCTARA_COMMAND "' " +
                                            std::string(arguments) + "\"");
        EXPECT_EQ(outcome.exitCode, 2);
        EXPECT_THAT(outcome.output,
                    testing::MatchesRegex("noctara: night: --live: standard .*put is not "
                                          "a terminal; [^\n]*\n"));
    }
}

TEST(TheLiveNight, is_refused_with_a_speed_that_is_none) {
    for (const char* speed : {"0", "-1", "1e9", "nan", "fast", "12x"}) {
        const Played outcome = noctara::run(
            "'" NOCTARA_COMMAND "' night --live --speed=" + std::string(speed) + " 2>&1");
        EXPECT_EQ(outcome.exitCode, 2) << speed;
        EXPECT_THAT(outcome.output, HasSubstr("is no number from 0.1 to 86400")) << speed;
    }
}

TEST(TheLiveNight, is_the_only_one_with_a_speed) {
    const Played outcome = noctara::run("'" NOCTARA_COMMAND "' night --speed 10 2>&1");
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_THAT(outcome.output, AllOf(HasSubstr("--speed"), HasSubstr("--live")));
}

} // namespace
