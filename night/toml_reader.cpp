/// A strict TOML reader.
#include "night/toml_reader.h"

#include "input/bad_input.h"
#include "input/nearest.h"
#include "night/toml_guard.h"

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>

namespace noctara {

namespace {

std::string onOneLine(std::string_view text) {
    std::string line(text);
    std::replace_if(
        line.begin(), line.end(),
        [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; }, ' ');
    return line;
}

/// The parser's description of an error says "Error while parsing SOMETHING: REASON".
std::string inOurWords(const std::string& description) {
    if (description.find("TOML_MAX_NESTED_VALUES") != description.npos)
        return "arrays and tables are nested too deeply; write them with fewer levels";
    const std::string_view beginning = "Error while parsing ";
    return "this is not TOML: " + (description.starts_with(beginning)
                                       ? "parsing " + description.substr(beginning.size())
                                       : description);
}

/// The advice for an unknown word: the nearest choice, if one is near, and the list of all choices.
std::string advice(std::string_view given, const Choices& choices) {
    const auto meant = nearest(given, choices);
    return (meant ? "did you mean " + inQuotes(*meant) + "? " : "") + listed(choices);
}

std::string describeType(const toml::node& node) {
    switch (node.type()) {
    case toml::node_type::string:
        return "a string";
    case toml::node_type::integer:
        return "an integer";
    case toml::node_type::floating_point:
        return "a real number";
    case toml::node_type::boolean:
        return "a boolean";
    case toml::node_type::date:
        return "a date without a time";
    case toml::node_type::time:
        return "a time without a date";
    case toml::node_type::date_time:
        return node.as_date_time()->get().offset ? "a date-time with an offset"
                                                 : "a local date-time";
    case toml::node_type::array:
        return "an array";
    case toml::node_type::table:
        return "a table";
    case toml::node_type::none:
        break;
    }
    return "nothing";
}

auto position(const toml::source_region& region) {
    return std::tuple(region.begin.line, region.begin.column);
}

} // namespace

std::string listed(const Choices& choices) {
    std::string text = "accepted:";
    for (const auto choice : choices)
        text.append(choice == choices.front() ? " " : ", ").append(choice);
    return text;
}

TomlValue::TomlValue(std::string name, const toml::node& node,
                     std::shared_ptr<const std::string> file) :
    valueName(std::move(name)), tomlNode(&node), fileName(std::move(file)) {}

std::string TomlValue::place() const {
    return placeOf(tomlNode->source());
}

std::string TomlValue::placeOf(const toml::source_region& region) const {
    return *fileName + ":" + std::to_string(region.begin.line) + ":" +
           std::to_string(region.begin.column);
}

void TomlValue::refuse(const std::string& wrong, const std::string& accepted) const {
    throw BadInput(place() + ": " + wrong + "; " + accepted);
}

void TomlValue::refuseType(const std::string& accepted) const {
    refuse(valueName + " is " + describeType(*tomlNode), accepted);
}

TomlValue TomlValue::sibling(std::string name, const toml::node& node) const {
    return {std::move(name), node, fileName};
}

bool TomlValue::boolean() const {
    if (!tomlNode->is_boolean())
        refuseType("write true or false");
    return tomlNode->as_boolean()->get();
}

void TomlValue::requireTrue() const {
    if (!tomlNode->is_boolean())
        refuseType("write true");
    if (!tomlNode->as_boolean()->get())
        refuse(valueName + " is false", "write true, or leave it out");
}

std::string TomlValue::text() const {
    if (!tomlNode->is_string())
        refuseType("write a string");
    return tomlNode->as_string()->get();
}

std::string TomlValue::nonEmptyText() const {
    std::string text = this->text();
    if (text.empty())
        refuse(valueName + " is empty", "write at least one character");
    return text;
}

std::size_t TomlValue::oneOf(const Choices& words) const {
    if (!tomlNode->is_string())
        refuseType(listed(words));
    const std::string text = tomlNode->as_string()->get();
    const auto found = std::find(words.begin(), words.end(), text);
    if (found == words.end())
        refuse(valueName + " is " + inQuotes(text), advice(text, words));
    return static_cast<std::size_t>(found - words.begin());
}

std::int64_t TomlValue::integer(std::int64_t least, std::int64_t greatest) const {
    const std::string accepted =
        "write an integer from " + std::to_string(least) + " to " + std::to_string(greatest);
    if (!tomlNode->is_integer())
        refuseType(accepted);
    const std::int64_t number = tomlNode->as_integer()->get();
    if (number < least || number > greatest)
        refuse(valueName + " is " + std::to_string(number), accepted);
    return number;
}

double TomlValue::real() const {
    if (!tomlNode->is_number())
        refuseType("write a number");
    const double number = tomlNode->is_integer()
                              ? static_cast<double>(tomlNode->as_integer()->get())
                              : tomlNode->as_floating_point()->get();
    if (!std::isfinite(number))
        refuse(valueName + " is not finite", "write a number");
    return number;
}

std::vector<TomlValue> TomlValue::elements(const std::string& accepted) const {
    if (!tomlNode->is_array())
        refuseType(accepted);
    std::vector<TomlValue> elements;
    for (const toml::node& element : *tomlNode->as_array())
        elements.push_back(sibling("an element of " + valueName, element));
    return elements;
}

std::vector<std::string> TomlValue::texts() const {
    std::vector<std::string> texts;
    for (const TomlValue& element : elements("write an array of strings"))
        texts.push_back(element.text());
    return texts;
}

std::vector<TomlValue> TomlValue::entries(const std::string& accepted) const {
    if (!tomlNode->is_table())
        refuseType(accepted);
    const toml::table& table = *tomlNode->as_table();
    std::vector<const toml::key*> keys;
    for (const auto& entry : table)
        keys.push_back(&entry.first);
    std::sort(keys.begin(), keys.end(), [](const toml::key* left, const toml::key* right) {
        return position(left->source()) < position(right->source());
    });
    std::vector<TomlValue> entries;
    for (const toml::key* key : keys)
        entries.push_back(sibling(std::string(key->str()), *table.get(key->str())));
    return entries;
}

TomlTable::TomlTable(TomlValue value, const Choices& keys) : tableValue(std::move(value)) {
    if (!tableValue.node().is_table())
        tableValue.refuseType("write a table");
    const toml::key* unknown = nullptr;
    for (const auto& [key, node] : *tableValue.node().as_table()) {
        const bool known = std::find(keys.begin(), keys.end(), key.str()) != keys.end();
        if (!known && (!unknown || position(key.source()) < position(unknown->source())))
            unknown = &key;
    }
    if (unknown)
        throw BadInput(tableValue.placeOf(unknown->source()) + ": unknown key " +
                       inQuotes(unknown->str()) + " in " + tableValue.name() + "; " +
                       advice(unknown->str(), keys));
}

std::optional<TomlValue> TomlTable::find(std::string_view key) const {
    const toml::node* node = tableValue.node().as_table()->get(key);
    if (!node)
        return std::nullopt;
    return tableValue.sibling(std::string(key), *node);
}

TomlValue TomlTable::require(std::string_view key) const {
    auto found = find(key);
    if (!found)
        tableValue.refuse(tableValue.name() + " has no " + std::string(key),
                          "give it one, " + std::string(key) + " is required");
    return *found;
}

std::vector<TomlValue> TomlTable::tables(std::string_view key) const {
    const auto found = find(key);
    if (!found)
        return {};
    const std::string header = "[[" + std::string(key) + "]]";
    std::vector<TomlValue> tables;
    for (const TomlValue& element : found->elements("write a table " + header + " for each"))
        tables.push_back(element.sibling(header, element.node()));
    return tables;
}

void TomlTable::read(std::string_view key, bool& target) const {
    if (const auto found = find(key))
        target = found->boolean();
}

void TomlTable::readNonEmpty(std::string_view key, std::string& target) const {
    if (const auto found = find(key))
        target = found->nonEmptyText();
}

toml::table parseToml(std::string_view text, const std::string& file) {
    checkToml(text, file);
    try {
        return toml::parse(text);
    } catch (const toml::parse_error& error) {
        const auto [line, column] = position(error.source());
        std::string what = inOurWords(onOneLine(error.description()));
        if (what.find("parsing time") != what.npos || what.find("parsing date") != what.npos)
            what += "; write times as 22:30:00 and local date-times as 2014-03-01T22:30:00";
        throw BadInput(file + ":" + std::to_string(line) + ":" + std::to_string(column) + ": " +
                       what);
    }
}

} // namespace noctara
