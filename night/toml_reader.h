/// A strict TOML reader. It refuses unknown keys, wrong types and values out of range, and names
/// their position.
#pragma once

#include "phones/model/words.h"

#include <array>
#include <cstddef>
#include <toml++/toml.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace noctara {

using Choices = std::vector<std::string_view>;

/// "accepted: a, b, c"
std::string listed(const Choices& choices);

/// A value of a document. The document must outlive it. Every reading function throws BadInput,
/// with the position of the value, for a value that it does not accept.
class TomlValue {
public:
    /// `name` is the name of the value in messages: its key, or the header of its table.
    TomlValue(std::string name, const toml::node& node, std::shared_ptr<const std::string> file);

    const toml::node& node() const { return *tomlNode; }
    const std::string& name() const { return valueName; }

    /// "FILE:LINE:COLUMN"
    std::string place() const;

    [[noreturn]] void refuse(const std::string& wrong, const std::string& accepted) const;

    /// Refuses the value because of its type.
    [[noreturn]] void refuseType(const std::string& accepted) const;

    bool boolean() const;

    /// Refuses every value except true.
    void requireTrue() const;

    std::string text() const;
    std::string nonEmptyText() const;

    /// The index of the word that it is.
    std::size_t oneOf(const Choices& words) const;

    /// The value that one of the words stands for.
    template <typename Value, std::size_t count>
    Value oneOf(const std::array<Word<Value>, count>& words) const {
        Choices accepted;
        for (const auto& word : words)
            accepted.push_back(word.word);
        return words[oneOf(accepted)].value;
    }

    std::int64_t integer(std::int64_t least, std::int64_t greatest) const;

    /// A finite number, written with or without a decimal point.
    double real() const;

    /// The elements of an array. The message for another value ends with `accepted`.
    std::vector<TomlValue> elements(const std::string& accepted) const;

    std::vector<std::string> texts() const;

    /// The entries of a table, in the order of the file. `accepted` is the end of the message for
    /// another value.
    std::vector<TomlValue> entries(const std::string& accepted) const;

    /// A value of the same file.
    TomlValue sibling(std::string name, const toml::node& node) const;

    /// As `place`, for another position in the same file.
    std::string placeOf(const toml::source_region& region) const;

private:
    std::string valueName;
    const toml::node* tomlNode;
    std::shared_ptr<const std::string> fileName;
};

/// A table that has only known keys.
class TomlTable {
public:
    /// Refuses a value that is not a table, and keys that are not in `keys`.
    TomlTable(TomlValue value, const Choices& keys);

    const TomlValue& value() const { return tableValue; }
    std::optional<TomlValue> find(std::string_view key) const;

    /// The value of a required key.
    TomlValue require(std::string_view key) const;

    /// The elements of an array of tables. Empty if there is no such key.
    std::vector<TomlValue> tables(std::string_view key) const;

    /// These leave `target` unchanged if there is no such key.
    void read(std::string_view key, bool& target) const;
    void readNonEmpty(std::string_view key, std::string& target) const;
    template <typename Value, std::size_t count>
    void readOneOf(std::string_view key, const std::array<Word<Value>, count>& words,
                   Value& target) const {
        if (const auto value = find(key))
            target = value->oneOf(words);
    }

private:
    TomlValue tableValue;
};

/// Parses a document. `file` is its name in messages. Throws BadInput.
toml::table parseToml(std::string_view text, const std::string& file);

} // namespace noctara
