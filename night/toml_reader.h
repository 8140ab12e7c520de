/// TOML read strictly: what is unknown, of a wrong type or out of range is refused with its place.
#pragma once

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

/// One value of a document, which must outlive it. Every reader throws BadInput, with the place of
/// the value, for what it does not accept.
class TomlValue {
public:
    /// `name` is what messages call the value: its key, or the header of its table.
    TomlValue(std::string name, const toml::node& node, std::shared_ptr<const std::string> file);

    const toml::node& node() const { return *tomlNode; }
    const std::string& name() const { return valueName; }

    /// "FILE:LINE:COLUMN"
    std::string place() const;

    [[noreturn]] void refuse(const std::string& wrong, const std::string& accepted) const;

    /// Refuses the value for its type.
    [[noreturn]] void refuseType(const std::string& accepted) const;

    bool boolean() const;

    /// Only true is accepted.
    bool onlyTrue() const;

    std::string text() const;
    std::string nonEmptyText() const;
    std::string oneOf(const Choices& choices) const;
    std::int64_t integer(std::int64_t least, std::int64_t greatest) const;

    /// A finite number, written with or without a decimal point.
    double real() const;

    /// The elements of an array. `accepted` says what array it has to be.
    std::vector<TomlValue> elements(const std::string& accepted) const;

    std::vector<std::string> texts() const;

    /// The entries of a table, in the order of the file. `accepted` says what table it has to be.
    std::vector<TomlValue> entries(const std::string& accepted) const;

    /// A value of the same file.
    TomlValue sibling(std::string name, const toml::node& node) const;

    /// As `place`, of another position in the same file.
    std::string placeOf(const toml::source_region& region) const;

private:
    std::string valueName;
    const toml::node* tomlNode;
    std::shared_ptr<const std::string> fileName;
};

/// A table of which all keys are known.
class TomlTable {
public:
    /// Refuses what is no table, and a key that is not among `keys`.
    TomlTable(TomlValue value, const Choices& keys);

    const TomlValue& value() const { return tableValue; }
    std::optional<TomlValue> find(std::string_view key) const;

    /// The value under a key that must be there.
    TomlValue require(std::string_view key) const;

    /// The values of an array of tables; none when there is no such key.
    std::vector<TomlValue> tables(std::string_view key) const;

    /// These leave `target` as it is when there is no such key.
    void read(std::string_view key, bool& target) const;
    void readNonEmpty(std::string_view key, std::string& target) const;
    void readOneOf(std::string_view key, const Choices& choices, std::string& target) const;

private:
    TomlValue tableValue;
};

/// Parses a document. `file` is what messages call it.
toml::table parseToml(std::string_view text, const std::string& file);

} // namespace noctara
