#include "input/completion.h"

#include <CLI/CLI.hpp>

#include <sstream>

namespace noctara {

namespace {

const std::string mark = "completion";

/// CLI11 has no place for such a declaration. A validator that accepts everything carries it in its
/// name, so that it lives as long as the option.
CLI::Option* declare(CLI::Option* option, const std::string& kind,
                     const std::vector<std::string>& choices = {}) {
    std::string name = mark + ' ' + kind;
    for (const auto& choice : choices)
        name += ' ' + choice;
    return option->check(CLI::Validator([](std::string&) { return std::string(); }, "", name));
}

Completion read(const std::string& name) {
    std::istringstream words(name);
    std::string word;
    words >> word >> word;
    Completion completion{word == "files"   ? Completion::Kind::files
                          : word == "words" ? Completion::Kind::words
                                            : Completion::Kind::timeZones,
                          {}};
    while (words >> word)
        completion.choices.push_back(word);
    return completion;
}

} // namespace

CLI::Option* completedByFiles(CLI::Option* option, const std::string& ending) {
    return declare(option, "files", {ending});
}

CLI::Option* completedByWords(CLI::Option* option, const std::vector<std::string>& words) {
    return declare(option, "words", words);
}

CLI::Option* completedByTimeZones(CLI::Option* option) {
    return declare(option, "zones");
}

Completion completionOf(CLI::Option& option) {
    try {
        for (int i = 0;; ++i)
            if (const auto& name = option.get_validator(i)->get_name(); name.starts_with(mark))
                return read(name);
    } catch (const CLI::OptionNotFound&) {
        // That was the last validator.
    }
    if (option.get_type_name() == "FILE")
        return {Completion::Kind::files, {}};
    if (option.get_type_name() == "FOLDER")
        return {Completion::Kind::folders, {}};
    return {};
}

} // namespace noctara
