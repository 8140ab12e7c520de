#include "command/program_text.h"

#include <CLI/CLI.hpp>

namespace noctara {

namespace {

OptionText textOf(CLI::Option& option) {
    OptionText text;
    for (const auto& name : option.get_snames())
        text.names.push_back('-' + name);
    for (const auto& name : option.get_lnames())
        text.names.push_back("--" + name);
    if (option.get_positional())
        text.names.push_back(option.get_name(true));
    text.isFlag = option.get_items_expected_max() == 0;
    text.value = text.isFlag ? "" : option.get_type_name();
    text.description = option.get_description();
    text.standard = option.get_default_str();
    for (const CLI::Option* needed : option.get_needs())
        text.needs.push_back(needed->get_name());
    text.completion = completionOf(option);
    text.isRequired = option.get_required();
    text.isRepeatable = option.get_multi_option_policy() == CLI::MultiOptionPolicy::TakeAll ||
                        option.get_items_expected_max() > 1;
    return text;
}

} // namespace

CommandText textOf(CLI::App& app) {
    CommandText text{app.get_name(), app.get_description(), {}, {}, {}};
    for (CLI::Option* option : app.get_options()) {
        const bool isHidden = option->get_group().empty();
        if (!isHidden)
            (option->get_positional() ? text.arguments : text.options).push_back(textOf(*option));
    }
    for (CLI::App* subcommand : app.get_subcommands(nullptr))
        if (!subcommand->get_group().empty())
            text.subcommands.push_back(textOf(*subcommand));
    return text;
}

} // namespace noctara
