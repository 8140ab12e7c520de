/// The man page and the completions that are made for the package agree with the help of the
/// command.
#include "input/temporary_folder.h"
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
    const auto refusal = noctara("detect x.csv " + option + " furlong");
    const std::string before = "is none of: ";
    const auto list = refusal.find(before);
    if (list == refusal.npos)
        return {};
    const auto start = list + before.length();
    return wordsIn(refusal.substr(start, refusal.find(" (", start) - start), "([^ ,]+)");
}

/// The folder with the man page and the completions.
std::string documentation() {
    static const noctara::TemporaryFolder folder("documentation");
    static const std::string made =
        outputOf("'" NOCTARA_DOCUMENTATION "' '" NOCTARA_SOURCE_DIR
                 "/packaging/command/noctara.1.in' 'November 22, 2026' '" +
                 folder.path.string() + "' 2>&1");
    EXPECT_EQ(made, "");
    return folder.path.string();
}

/// The completions of the last of these shell words.
Words completed(const std::string& words) {
    return wordsIn(outputOf("cd '" NOCTARA_SOURCE_DIR "' && bash -c '"
                            "source \"$0\"; COMP_WORDS=(noctara \"$@\"); COMP_CWORD=$#; "
                            "_noctara; printf \"%s\\n\" \"${COMPREPLY[@]}\"' "
                            "'" +
                            documentation() + "/noctara.bash' " + words),
                   "(.+)");
}

/// The sections of the man page's source, by their headings.
std::map<std::string, std::string> sectionsOfManPage() {
    std::ifstream in(documentation() + "/noctara.1");
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
    EXPECT_THAT(subcommands(), IsSupersetOf({"capabilities", "detect", "help", "night", "replay"}));
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
            EXPECT_THAT(sections.at("noctara night"), HasSubstr(choice)) << option;
    const auto help = noctara("--help");
    EXPECT_EQ(wordsIn(sections.at("EXIT STATUS"), "^\\.It ([0-9])$"),
              wordsIn(help.substr(help.find("Exit codes:")), "([0-9])"));
}

TEST(TheManPage, has_no_fault_of_form) {
    EXPECT_EQ(outputOf("mandoc -T lint -W warning '" + documentation() + "/noctara.1' 2>&1"), "");
    EXPECT_EQ(outputOf("man --warnings -l '" + documentation() + "/noctara.1' 2>&1 >/dev/null"),
              "");
}

TEST(TheManPage, shows_hyphens_and_lines_that_begin_with_a_dot_as_they_are) {
    const auto shown = outputOf("mandoc -T ascii '" + documentation() + "/noctara.1' | col -b");
    EXPECT_THAT(shown, HasSubstr("--trace FILE"));
    EXPECT_THAT(shown, HasSubstr("z = -1 g"));
    EXPECT_THAT(shown, HasSubstr("Sensitivity=0..9"));
}

TEST(TheCompletion, is_registered_for_the_command) {
    EXPECT_EQ(outputOf("bash -c 'source \"$0\"; complete -p noctara' '" + documentation() +
                       "/noctara.bash'"),
              "complete -F _noctara noctara\n");
}

TEST(TheCompletion, offers_the_subcommands_and_the_options_of_each) {
    Words first = subcommands();
    first.insert({"-h", "--help", "--version"});
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

TEST(TheCompletions, are_read_by_their_shells_without_an_error) {
    for (const char* check : {"bash -n noctara.bash", "zsh -n _noctara", "fish -n noctara.fish"})
        EXPECT_EQ(outputOf("cd '" + documentation() + "' && " + check + " 2>&1 && echo fine"),
                  "fine\n")
            << check;
}

/// What fish offers for a command line, without the descriptions.
Words completedInFish(const std::string& line) {
    return wordsIn(outputOf("cd '" NOCTARA_SOURCE_DIR "' && HOME=/nonexistent fish --no-config -c "
                            "\"source '" +
                            documentation() + "/noctara.fish'; complete -C'" + line + "'\" 2>&1"),
                   "^([^\\t\\n]+)");
}

TEST(TheCompletionOfFish, offers_the_subcommands_the_options_and_their_choices) {
    EXPECT_EQ(completedInFish("noctara "), subcommands());
    EXPECT_EQ(completedInFish("noctara night --"), optionsOf("night"));
    EXPECT_EQ(completedInFish("noctara night --unit "), choicesOf("--unit"));
    EXPECT_EQ(completedInFish("noctara night --timezone Europe/Pari"), Words{"Europe/Paris"});
    EXPECT_THAT(completedInFish("noctara night scenarios/typical"),
                IsSupersetOf({"scenarios/typical-night.toml"}));
}

TEST(TheCompletionOfZsh, names_every_option_of_every_subcommand) {
    std::ifstream in(documentation() + "/_noctara");
    const std::string text(std::istreambuf_iterator<char>(in), {});
    for (const auto& subcommand : subcommands()) {
        const auto begin = text.find("\n    " + subcommand + ")\n");
        ASSERT_NE(begin, text.npos) << subcommand;
        Words options = wordsIn(text.substr(begin, text.find(";;", begin) - begin),
                                "^            '\\*?(--[a-z-]+)");
        options.insert("--help");
        EXPECT_EQ(options, optionsOf(subcommand));
    }
}

} // namespace
