#include "input/command_line_faults.h"

#include "input/bad_input.h"
#include "input/completion.h"
#include "input/nearest.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <string_view>
#include <vector>

namespace noctara {

namespace {

/// The program and the subcommand that the user chose.
std::vector<CLI::App*> parsedParts(CLI::App& program) {
    std::vector<CLI::App*> parts{&program};
    for (CLI::App* subcommand : program.get_subcommands())
        parts.push_back(subcommand);
    return parts;
}

bool isFlag(const CLI::Option& option) {
    return option.get_items_expected_max() == 0;
}

/// The options of the parsed parts for which the predicate holds.
template <typename Predicate>
std::vector<CLI::Option*> optionsWith(CLI::App& program, Predicate predicate) {
    std::vector<CLI::Option*> found;
    for (CLI::App* part : parsedParts(program))
        for (CLI::Option* option : part->get_options())
            if (predicate(*option))
                found.push_back(option);
    return found;
}

bool isGiven(const CLI::Option& option) {
    return option.count() > 0;
}

/// How to write the option on a command line: "--rate HZ".
std::string usageOf(const CLI::Option& option) {
    const std::string type = option.get_type_name();
    return option.get_name() + (isFlag(option) || type.empty() ? "" : ' ' + type);
}

std::string didYouMean(const std::string& word, const std::vector<std::string>& choices) {
    const std::vector<std::string_view> views(choices.begin(), choices.end());
    const auto found = nearest(word, views);
    return found ? "; did you mean " + std::string(*found) + "?" : "";
}

std::vector<std::string> namesOfSubcommands(CLI::App& program) {
    std::vector<std::string> names;
    for (const CLI::App* subcommand : program.get_subcommands(nullptr))
        names.push_back(subcommand->get_name());
    return names;
}

std::string giveSubcommand(CLI::App& program) {
    std::string names;
    for (const auto& name : namesOfSubcommands(program))
        names += (names.empty() ? "" : ", ") + name;
    return "give one of: " + names;
}

/// The first subcommand that reads a file of this name.
std::optional<std::string> readerOf(CLI::App& program, const std::string& file) {
    for (CLI::App* subcommand : program.get_subcommands(nullptr))
        for (CLI::Option* option : subcommand->get_options()) {
            if (!option->get_positional())
                continue;
            const Completion completion = completionOf(*option);
            if (completion.kind == Completion::Kind::files &&
                std::any_of(completion.choices.begin(), completion.choices.end(),
                            [&](const auto& ending) { return file.ends_with(ending); }))
                return subcommand->get_name();
        }
    return std::nullopt;
}

std::string unknownArgument(CLI::App& program, const std::string& argument) {
    const bool isOption = argument.starts_with('-') && argument.size() > 1;
    if (isOption) {
        const std::string name = argument.substr(0, argument.find('='));
        std::vector<std::string> names;
        for (CLI::Option* option : optionsWith(program, [](const auto&) { return true; }))
            for (const auto& longName : option->get_lnames())
                names.push_back("--" + longName);
        return inQuotes(name) + " is no option of " + chosenCommand(program) +
               didYouMean(name, names);
    }
    if (!program.get_subcommands().empty() || program.get_subcommands(nullptr).empty())
        return inQuotes(argument) + " is one argument too many";
    if (const auto reader = readerOf(program, argument))
        return inQuotes(argument) + " is no subcommand; write " + program.get_name() + ' ' +
               *reader + ' ' + argument;
    const std::string meant = didYouMean(argument, namesOfSubcommands(program));
    return inQuotes(argument) + " is no subcommand" +
           (meant.empty() ? "; " + giveSubcommand(program) : meant);
}

std::string wrongValue(const CLI::Option& option, const std::string& value) {
    if (isFlag(option))
        return option.get_name() + " takes no value; leave out " + inQuotes(value);
    const std::string name = option.get_name() + ": " + inQuotes(value);
    char* end = nullptr;
    std::strtod(value.c_str(), &end);
    if (value.empty() || *end != '\0')
        return name + " is not a number; write " + usageOf(option);
    if (value.find_first_not_of("+-0123456789") == value.npos)
        return name + " is too large; write " + usageOf(option);
    return name + " is not a whole number; write " + usageOf(option);
}

std::string wrongCount(CLI::App& program, const std::string& what) {
    const auto repeated = optionsWith(program, [](const auto& option) {
        return !isFlag(option) &&
               static_cast<int>(option.count()) > option.get_items_expected_max();
    });
    if (!repeated.empty())
        return repeated[0]->get_name() + " is given " + std::to_string(repeated[0]->count()) +
               " times; give it once";
    // The text begins with the name of the option and a colon.
    const std::string name = what.substr(0, what.find(':'));
    const auto named =
        optionsWith(program, [&](const auto& option) { return option.get_name() == name; });
    if (named.empty())
        return what;
    return name + ": the value is missing; write " + usageOf(*named[0]);
}

std::string notConverted(CLI::App& program, const std::string& what) {
    for (CLI::Option* option : optionsWith(program, isGiven)) {
        try {
            option->run_callback();
        } catch (const CLI::ConversionError&) {
            return wrongValue(*option, option->results().back());
        } catch (const CLI::Error&) {
            return what;
        }
    }
    return what;
}

std::string withoutNeeded(CLI::App& program, const std::string& what) {
    for (CLI::Option* option : optionsWith(program, isGiven))
        for (const CLI::Option* needed : option->get_needs())
            if (!isGiven(*needed))
                return option->get_name() + " has no effect without " + needed->get_name() +
                       "; add " + usageOf(*needed) + ", or leave it out";
    return what;
}

std::string excluded(CLI::App& program, const std::string& what) {
    for (CLI::Option* option : optionsWith(program, isGiven))
        for (const CLI::Option* other : option->get_excludes())
            if (isGiven(*other))
                return option->get_name() + " and " + other->get_name() +
                       " exclude each other; give one of them";
    return what;
}

std::string missing(CLI::App& program, const std::string& what) {
    if (program.get_subcommands().empty() && program.get_require_subcommand_min() > 0)
        return "the subcommand is missing; " + giveSubcommand(program);
    const auto absent = optionsWith(
        program, [](const auto& option) { return option.get_required() && !isGiven(option); });
    if (absent.empty())
        return what;
    return absent[0]->get_name() + " is missing; write " + chosenCommand(program) + ' ' +
           usageOf(*absent[0]);
}

} // namespace

std::string chosenCommand(const CLI::App& program) {
    std::string words = program.get_name();
    for (const CLI::App* subcommand : program.get_subcommands())
        words += ' ' + subcommand->get_name();
    return words;
}

std::string faultInWords(CLI::App& program, const CLI::ParseError& error) {
    const std::string what = error.what();
    if (const auto unknown = program.remaining(true); !unknown.empty())
        return unknownArgument(program, unknown.front());
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error))
        return wrongCount(program, what);
    if (dynamic_cast<const CLI::ConversionError*>(&error))
        return notConverted(program, what);
    if (dynamic_cast<const CLI::RequiresError*>(&error))
        return withoutNeeded(program, what);
    if (dynamic_cast<const CLI::ExcludesError*>(&error))
        return excluded(program, what);
    if (dynamic_cast<const CLI::RequiredError*>(&error))
        return missing(program, what);
    return what;
}

std::optional<std::string> acceptedFault(CLI::App& program) {
    for (const CLI::Option* option : optionsWith(program, isGiven)) {
        const auto& values = option->results();
        if (isFlag(*option)) {
            for (const auto& value : values)
                if (value != "true")
                    return wrongValue(*option, value);
        } else if (std::find(values.begin(), values.end(), "") != values.end()) {
            return option->get_name() + ": the value is empty; write " + usageOf(*option) +
                   ", or leave it out";
        }
    }
    return std::nullopt;
}

} // namespace noctara
