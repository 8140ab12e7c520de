/// The man page and the completion of the command agree with its help.
#include "tests/programs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>

namespace {

using testing::HasSubstr;
using testing::IsSupersetOf;

using Words = std::set<std::string>;

std::string outputOf(const std::string& command) {
    return noctara::run(command).output;
}

std::string noctara(const std::string& arguments) {
    return outputOf("'" NOCTARA_COMMAND "' " + arguments + " 2>&1");
}

/// The first group of every match.
Words wordsIn(const std::string& text, const std::string& pattern) {
    const std::regex expression(pattern, std::regex::multiline);
    Words found;
    for (std::sregex_iterator match(text.begin(), text.end(), expression), end; match != end;
         ++match)
        found.insert((*match)[1]);
    return found;
}

Words subcommands() {
    const auto help = noctara("--help");
    return wordsIn(help.substr(help.find("Subcommands:")), "^  ([a-z]+) ");
}

/// The long options in a subcommand's help.
Words optionsOf(const std::string& subcommand) {
    return wordsIn(noctara(subcommand + " --help"), "^  (?:-[a-z],)?(--[a-z-]+)");
}

/// The values that an option accepts, from the error message for another value.
Words choicesOf(const std::string& option) {
    const auto refusal = noctara("night " + option + " furlong");
    const std::string before = "is none of: ";
    const auto list = refusal.find(before);
    if (list == refusal.npos)
        return {};
    const auto start = list + before.length();
    return wordsIn(refusal.substr(start, refusal.find(" (", start) - start), "([^ ,]+)");
}

/// The completions of the last of these shell words.
Words completed(const std::string& words) {
    return wordsIn(outputOf("cd '" NOCTARA_SOURCE_DIR "' && bash -c '"
                            "source \"$0\"; COMP_WORDS=(noctara \"$@\"); COMP_CWORD=$#; "
                            "_noctara; printf \"%s\\n\" \"${COMPREPLY[@]}\"' "
                            "packaging/command/completion.bash " +
                            words),
                   "(.+)");
}

/// The sections of the man page's source, by their headings.
std::map<std::string, std::string> sectionsOfManPage() {
    std::ifstream in(NOCTARA_SOURCE_DIR "/packaging/command/noctara.1");
    std::map<std::string, std::string> sections;
    std::string heading;
    for (std::string line; std::getline(in, line);)
        if (line.starts_with(".Sh ") || line.starts_with(".Ss "))
            heading = line.substr(4);
        else
            sections[heading] += line + '\n';
    return sections;
}

TEST(TheHelp, is_read_by_these_tests) {
    EXPECT_EQ(subcommands(), (Words{"capabilities", "detect", "night", "replay"}));
    EXPECT_EQ(optionsOf("capabilities"), (Words{"--help"}));
    EXPECT_THAT(optionsOf("night"), IsSupersetOf({"--help", "--motion-at", "--timezone"}));
    EXPECT_EQ(choicesOf("--axes"), (Words{"android", "ios"}));
}

TEST(TheManPage, describes_every_subcommand_with_its_options_and_no_others) {
    const auto sections = sectionsOfManPage();
    for (const auto& subcommand : subcommands()) {
        ASSERT_TRUE(sections.contains("noctara " + subcommand)) << subcommand;
        Words described =
            wordsIn(sections.at("noctara " + subcommand), "^\\.It Fl (-[a-z-]+)(?: |$)");
        Words expected;
        for (const auto& option : optionsOf(subcommand))
            if (option != "--help") // Described once for all subcommands.
                expected.insert(option.substr(1));
        EXPECT_EQ(described, expected) << subcommand;
        EXPECT_THAT(sections.at("SYNOPSIS"), HasSubstr(".Cm " + subcommand + '\n'));
    }
    EXPECT_THAT(sections.at("DESCRIPTION"), HasSubstr(".Fl -help"));
}

TEST(TheManPage, tells_the_choices_of_options_and_the_exit_codes) {
    const auto sections = sectionsOfManPage();
    for (const char* option : {"--unit", "--axes"})
        for (const auto& choice : choicesOf(option))
            EXPECT_THAT(sections.at("noctara night"), HasSubstr(".Cm " + choice)) << option;
    const auto help = noctara("--help");
    EXPECT_EQ(wordsIn(sections.at("EXIT STATUS"), "^\\.It ([0-9])$"),
              wordsIn(help.substr(help.find("Exit codes:")), "([0-9])"));
}

TEST(TheCompletion, is_registered_for_the_command) {
    EXPECT_EQ(outputOf("bash -c 'source \"$0\"; complete -p noctara' "
                       "'" NOCTARA_SOURCE_DIR "/packaging/command/completion.bash'"),
              "complete -F _noctara noctara\n");
}

TEST(TheCompletion, offers_the_subcommands_and_the_options_of_each) {
    Words first = subcommands();
    first.insert({"-h", "--help"});
    EXPECT_EQ(completed("''"), first);
    EXPECT_EQ(completed("n"), Words{"night"});
    for (const auto& subcommand : subcommands()) {
        Words options = optionsOf(subcommand);
        EXPECT_EQ(completed(subcommand + " --"), options);
        options.insert("-h");
        EXPECT_EQ(completed(subcommand + " -"), options);
    }
}

TEST(TheCompletion, offers_the_choices_of_an_option_after_a_blank_and_after_an_equals_sign) {
    for (const std::string option : {"--unit", "--axes"})
        for (const std::string subcommand : {"night ", "detect "}) {
            EXPECT_FALSE(choicesOf(option).empty());
            EXPECT_EQ(completed(subcommand + option + " ''"), choicesOf(option));
            EXPECT_EQ(completed(subcommand + option + " ="), choicesOf(option));
        }
    EXPECT_EQ(completed("night --axes = i"), Words{"ios"});
}

TEST(TheCompletion, offers_the_files_that_fit_and_the_folders_on_the_way) {
    EXPECT_EQ(completed("night scenarios/typical"), Words{"scenarios/typical-night.toml"});
    EXPECT_EQ(completed("capabilities scenarios/typical"), Words{"scenarios/typical-night.toml"});
    EXPECT_EQ(completed("night scenar"), Words{"scenarios"});
    EXPECT_EQ(completed("detect scenarios/"), Words{});
    EXPECT_EQ(completed("night --settings packaging/phone/N"),
              Words{"packaging/phone/Noctara.plist"});
    EXPECT_EQ(completed("night --trace docs/tr"), Words{"docs/trace.md"});
    EXPECT_EQ(completed("night --root READ"), Words{});
    EXPECT_EQ(completed("night --start 2"), Words{});
}

} // namespace
