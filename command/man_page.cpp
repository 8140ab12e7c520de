#include "command/program_text.h"

#include <sstream>

namespace noctara {

namespace {

/// Text for mdoc, in lines of at most 78 characters.
std::string paragraph(const std::string& text) {
    constexpr std::size_t longestLine = 78;
    std::string lines, line;
    const auto endLine = [&] {
        // A line that begins with one of these would be a macro.
        const bool isMacro = line.starts_with('.') || line.starts_with('\'');
        lines += (isMacro ? "\\&" : "") + line + '\n';
        line.clear();
    };
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        std::string escaped;
        for (const char c : word)
            escaped += c == '\\' ? "\\e" : c == '-' ? "\\-" : std::string(1, c);
        if (!line.empty() && line.size() + 1 + escaped.size() > longestLine)
            endLine();
        line += (line.empty() ? "" : " ") + escaped;
        // A sentence begins on a new line.
        if (word.ends_with('.'))
            endLine();
    }
    if (!line.empty())
        endLine();
    return lines;
}

std::string sentence(std::string text) {
    if (!text.empty() && text[0] >= 'a' && text[0] <= 'z')
        text[0] = static_cast<char>(text[0] - 'a' + 'A');
    return text.ends_with('.') || text.ends_with('?') ? text : text + '.';
}

/// "Fl -trace Ar FILE" for "--trace", "Ar SCENARIO" for an argument.
std::string asMacros(const OptionText& option) {
    std::string macros;
    for (const auto& name : option.names)
        macros += (macros.empty() ? "" : " , ") +
                  (name.starts_with('-') ? "Fl " + name.substr(1) : "Ar " + name);
    return macros + (option.value.empty() ? "" : " Ar " + option.value);
}

bool isHelp(const OptionText& option) {
    return option.names.back() == "--help";
}

std::string item(const OptionText& option) {
    std::string text = ".It " + asMacros(option) + '\n' + paragraph(sentence(option.description));
    if (!option.standard.empty())
        text += paragraph("Default: " + option.standard + '.');
    for (const auto& needed : option.needs)
        text += "It has no effect without\n.Fl " + needed.substr(1) + " .\n";
    return text;
}

/// The section of a subcommand, and those of its subcommands.
std::string section(const std::string& parent, const CommandText& command) {
    const std::string name = parent + ' ' + command.name;
    std::string text = ".Ss " + name + '\n' + paragraph(sentence(command.description));
    std::string items;
    for (const auto* list : {&command.arguments, &command.options})
        for (const auto& option : *list)
            if (!isHelp(option))
                items += item(option);
    if (!items.empty())
        text += ".Bl -tag -width Ds\n" + items + ".El\n";
    for (const auto& subcommand : command.subcommands)
        text += section(name, subcommand);
    return text;
}

std::string synopsis(const CommandText& command) {
    std::string text = ".Nm\n.Cm " + command.name + "\n";
    if (command.options.size() > 1)
        text += ".Op Ar OPTION ...\n";
    for (const auto& argument : command.arguments)
        text += (argument.isRequired ? "." : ".Op ") + asMacros(argument) +
                (argument.isRepeatable ? " ...\n" : "\n");
    if (!command.subcommands.empty())
        text += ".Op Ar SUBCOMMAND ...\n";
    return text;
}

} // namespace

std::string manPage(const CommandText& program, const std::string& pageTemplate,
                    const std::string& date) {
    std::string page;
    std::istringstream lines(pageTemplate);
    for (std::string line; std::getline(lines, line);) {
        if (line == "@DATE@") {
            page += ".Dd " + date + '\n';
        } else if (line == "@SYNOPSIS@") {
            for (const auto& command : program.subcommands)
                page += synopsis(command);
            page += ".Nm\n.Fl -version\n";
        } else if (line == "@SUBCOMMANDS@") {
            for (const auto& command : program.subcommands)
                page += section(program.name, command);
        } else {
            page += line + '\n';
        }
    }
    return page;
}

} // namespace noctara
