#include "command/program_text.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace noctara {

namespace {

using Kind = Completion::Kind;

constexpr const char* listOfTimeZones =
    R"(awk '$1 == "Z" { print $2 } $1 == "L" { print $3 }' /usr/share/zoneinfo/tzdata.zi 2> /dev/null)";

std::vector<std::string> optionNames(const CommandText& command) {
    std::vector<std::string> names;
    for (const auto& option : command.options)
        names.insert(names.end(), option.names.begin(), option.names.end());
    return names;
}

std::vector<std::string> names(const std::vector<CommandText>& commands) {
    std::vector<std::string> found;
    for (const auto& command : commands)
        found.push_back(command.name);
    return found;
}

/// The first clause of a description, which is shown beside a completion.
std::string shortened(const std::string& description) {
    return description.substr(0, description.find(';'));
}

/// `text` with a backslash before each of these characters.
std::string escaped(const std::string& text, const std::string& characters) {
    std::string result;
    for (const char c : text)
        result += (characters.find(c) != characters.npos ? "\\" : "") + std::string(1, c);
    return result;
}

/// In single quotes of a POSIX shell.
std::string quoted(const std::string& text) {
    std::string result = "'";
    for (const char c : text)
        result += c == '\'' ? "'\\''" : std::string(1, c);
    return result + '\'';
}

/// Each word after a blank.
std::string listed(const std::vector<std::string>& words) {
    std::string text;
    for (const auto& word : words)
        text += ' ' + word;
    return text;
}

std::string inBash(const Completion& completion) {
    switch (completion.kind) {
    case Kind::files:
        return "_noctara_files \"$word\"" + listed(completion.choices);
    case Kind::folders:
        return "_noctara_files \"$word\" /";
    case Kind::words:
        return "_noctara_words \"$word\"" + listed(completion.choices);
    case Kind::timeZones:
        return fmt::format("_noctara_words \"$word\" \"$({})\"", listOfTimeZones);
    case Kind::nothing:
        break;
    }
    return ":";
}

/// The branches that complete the value of an option, and those that complete options and
/// arguments.
std::string branchesInBash(const CommandText& program, bool ofValues) {
    std::string branches;
    for (const auto& command : program.subcommands) {
        if (!ofValues) {
            std::string argument =
                command.arguments.empty() ? ":" : inBash(command.arguments[0].completion);
            if (!command.subcommands.empty())
                argument += "\n            COMPREPLY+=($(compgen -W '" +
                            fmt::format("{}", fmt::join(names(command.subcommands), " ")) +
                            "' -- \"$word\"))";
            branches += fmt::format("    {})\n"
                                    "        if [[ $word == -* ]]; then\n"
                                    "            _noctara_words \"$word\" {}\n"
                                    "        else\n"
                                    "            {}\n"
                                    "        fi\n"
                                    "        ;;\n",
                                    command.name, fmt::join(optionNames(command), " "), argument);
            continue;
        }
        for (const auto& option : command.options)
            if (!option.isFlag)
                branches += fmt::format("    {}) {} && return ;;\n",
                                        fmt::format("'{} {}'", command.name, option.names.back()),
                                        inBash(option.completion));
    }
    return branches;
}

std::string inZsh(const Completion& completion) {
    switch (completion.kind) {
    case Kind::files:
        return completion.choices.empty()
                   ? "_files"
                   : fmt::format("_files -g \"*{}\"", fmt::join(completion.choices, "|*"));
    case Kind::folders:
        return "_files -/";
    case Kind::words:
        return fmt::format("({})", fmt::join(completion.choices, " "));
    case Kind::timeZones:
        return "_time_zone";
    case Kind::nothing:
        break;
    }
    return " ";
}

std::string specInZsh(const OptionText& option) {
    const std::string help = '[' + escaped(shortened(option.description), "[]\\:") + ']';
    const std::string value =
        option.isFlag ? "" : ':' + option.value + ':' + inZsh(option.completion);
    const std::string many = option.isRepeatable ? "*" : "";
    if (option.names.size() == 1)
        return quoted(many + option.names[0] + (option.isFlag ? "" : "=") + help + value);
    return fmt::format("'({})'{{{}}}{}", fmt::join(option.names, " "), fmt::join(option.names, ","),
                       quoted(help + value));
}

std::string argumentInZsh(const OptionText& argument) {
    return quoted((argument.isRepeatable ? "*:"
                   : argument.isRequired ? "1:"
                                         : "1::") +
                  argument.names[0] + ':' + inZsh(argument.completion));
}

std::string inFish(const Completion& completion) {
    switch (completion.kind) {
    case Kind::files:
        return completion.choices.empty() ? " -F"
                                          : fmt::format(" -k -x -a '(__fish_complete_suffix {})'",
                                                        fmt::join(completion.choices, " "));
    case Kind::folders:
        return " -x -a '(__fish_complete_directories)'";
    case Kind::words:
        return fmt::format(" -x -a '{}'", fmt::join(completion.choices, " "));
    case Kind::timeZones:
        return " -x -a '(string match -r \"^[ZL] .*\" < /usr/share/zoneinfo/tzdata.zi | string "
               "replace -r \"^(Z ([^ ]+).*|L [^ ]+ ([^ ]+))\\$\" \"\\$2\\$3\")'";
    case Kind::nothing:
        break;
    }
    return " -x";
}

std::string inFish(const OptionText& option, const std::string& when) {
    std::string line = "complete -c noctara -n " + when;
    for (const auto& name : option.names)
        line += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
    if (!option.isFlag)
        line += " -r" + inFish(option.completion);
    return line + " -d '" + escaped(shortened(option.description), "'\\") + "'\n";
}

} // namespace

std::string bashCompletion(const CommandText& program) {
    std::string text = R"(# Completion of the command noctara in bash. It is generated.

# _noctara_files WORD [ENDING]: offers folders and files, or folders and the files with this ending.
# The ending / gives folders only.
_noctara_files() {
    compopt -o filenames 2> /dev/null
    mapfile -t COMPREPLY < <({ compgen -d -- "$1"; compgen -f -X "!*${2-}" -- "$1"; } | sort -u)
}

# _noctara_words WORD CHOICE...: offers the choices that begin with the word.
_noctara_words() {
    mapfile -t COMPREPLY < <(compgen -W "${*:2}" -- "$1")
}

_noctara() {
    local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    COMPREPLY=()

    # bash splits --unit=g into three words.
    if [[ $word == = ]]; then
        word=
    elif [[ $previous == = ]]; then
        previous=${COMP_WORDS[COMP_CWORD - 2]}
    fi

    if ((COMP_CWORD == 1)); then
)";
    auto first = names(program.subcommands);
    const auto options = optionNames(program);
    first.insert(first.end(), options.begin(), options.end());
    text += fmt::format("        _noctara_words \"$word\" {}\n", fmt::join(first, " "));
    text += "        return\n    fi\n\n    case \"${COMP_WORDS[1]} $previous\" in\n";
    text += branchesInBash(program, true);
    text += "    esac\n\n    case ${COMP_WORDS[1]} in\n";
    text += branchesInBash(program, false);
    return text + "    esac\n}\n\ncomplete -F _noctara noctara\n";
}

std::string zshCompletion(const CommandText& program) {
    std::string text = "#compdef noctara\n# Completion of the command noctara in zsh. It is "
                       "generated.\n\n_noctara() {\n    local -a subcommands=(\n";
    for (const auto& command : program.subcommands)
        text += "        " +
                quoted(command.name + ':' + escaped(shortened(command.description), ":\\")) + '\n';
    text += "    )\n    if ((CURRENT == 2)); then\n"
            "        _describe -t commands subcommand subcommands\n        _arguments";
    for (const auto& option : program.options)
        text += " \\\n            " + specInZsh(option);
    text += "\n        return\n    fi\n    local subcommand=$words[2]\n    shift words\n"
            "    ((CURRENT--))\n    case $subcommand in\n";
    for (const auto& command : program.subcommands) {
        text += "    " + command.name + ")\n        _arguments";
        for (const auto& option : command.options)
            text += " \\\n            " + specInZsh(option);
        for (const auto& argument : command.arguments)
            text += " \\\n            " + argumentInZsh(argument);
        if (!command.subcommands.empty())
            text += fmt::format(" \\\n            '*:subcommand:({})'",
                                fmt::join(names(command.subcommands), " "));
        text += "\n        ;;\n";
    }
    return text + "    esac\n}\n\n_noctara \"$@\"\n";
}

std::string fishCompletion(const CommandText& program) {
    std::string text =
        "# Completion of the command noctara in fish. It is generated.\n\ncomplete -c noctara -f\n";
    for (const auto& command : program.subcommands)
        text += fmt::format("complete -c noctara -n __fish_use_subcommand -a {} -d '{}'\n",
                            command.name, escaped(shortened(command.description), "'\\"));
    for (const auto& option : program.options)
        text += inFish(option, "__fish_use_subcommand");
    for (const auto& command : program.subcommands) {
        const std::string when = "'__fish_seen_subcommand_from " + command.name + "'";
        text += '\n';
        for (const auto& option : command.options)
            text += inFish(option, when);
        for (const auto& argument : command.arguments)
            if (argument.completion.kind != Kind::nothing)
                text += "complete -c noctara -n " + when + inFish(argument.completion) + '\n';
        for (const auto& subcommand : command.subcommands)
            text += "complete -c noctara -n " + when + " -a " + subcommand.name + '\n';
    }
    return text;
}

} // namespace noctara
