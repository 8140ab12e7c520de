#include "platform/property_list.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <utility>

namespace noctara {

namespace {

constexpr std::string_view blanks = " \t\n\v\f\r";

std::string_view withoutLeading(std::string_view text, std::string_view characters) {
    text.remove_prefix(std::min(text.find_first_not_of(characters), text.size()));
    return text;
}

bool truthOf(std::string_view text) {
    text = withoutLeading(text, blanks);
    if (text.starts_with('+') || text.starts_with('-'))
        text.remove_prefix(1);
    text = withoutLeading(text, "0");
    return !text.empty() && std::string_view("YyTt123456789").find(text[0]) != text.npos;
}

std::int32_t clamped(double real) {
    if (std::isnan(real))
        return 0;
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(
        std::clamp(real, double{Limits::min()}, double{Limits::max()}));
}

std::int32_t integerOf(std::string_view text) {
    text = withoutLeading(text, blanks);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+'))
        text.remove_prefix(1);
    std::uint64_t magnitude = 0;
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), magnitude);
    if (parsed.ec == std::errc::result_out_of_range)
        magnitude = std::numeric_limits<std::uint64_t>::max();
    const double real = static_cast<double>(magnitude);
    return clamped(negative ? -real : real);
}

} // namespace

Dictionary::Dictionary() = default;
Dictionary::Dictionary(const Dictionary&) = default;
Dictionary::Dictionary(Dictionary&&) noexcept = default;
Dictionary& Dictionary::operator=(const Dictionary&) = default;
Dictionary& Dictionary::operator=(Dictionary&&) noexcept = default;
Dictionary::~Dictionary() = default;

Dictionary::Dictionary(std::initializer_list<DictionaryEntry> initial) {
    entries.reserve(initial.size());
    for (const auto& [key, value] : initial)
        set(key, value);
}

const PropertyList* Dictionary::find(std::string_view key) const {
    for (const auto& entry : entries)
        if (entry.key == key)
            return &entry.value;
    return nullptr;
}

PropertyList* Dictionary::find(std::string_view key) {
    return const_cast<PropertyList*>(std::as_const(*this).find(key));
}

void Dictionary::set(std::string_view key, PropertyList value) {
    for (auto& entry : entries)
        if (entry.key == key) {
            entry.value = std::move(value);
            return;
        }
    if (entries.empty())
        entries.reserve(4); // Most dictionaries have several keys.
    entries.emplace_back(key, std::move(value));
}

bool Dictionary::remove(std::string_view key) {
    return std::erase_if(entries, [&](const auto& entry) { return entry.key == key; }) != 0;
}

std::size_t Dictionary::size() const {
    return entries.size();
}
std::vector<DictionaryEntry>::const_iterator Dictionary::begin() const {
    return entries.begin();
}
std::vector<DictionaryEntry>::const_iterator Dictionary::end() const {
    return entries.end();
}

bool operator==(const Dictionary& one, const Dictionary& other) {
    return one.entries == other.entries;
}

bool operator==(const PropertyList& one, const PropertyList& other) {
    return one.value == other.value;
}

bool PropertyList::boolValue() const {
    if (const auto* truth = as<bool>())
        return *truth;
    if (const auto* integer = as<std::int64_t>())
        return *integer != 0;
    if (const auto* real = as<double>())
        return *real != 0;
    if (const auto* text = as<std::string>())
        return truthOf(*text);
    return false;
}

std::int32_t PropertyList::intValue() const {
    if (const auto* truth = as<bool>())
        return *truth;
    if (const auto* integer = as<std::int64_t>())
        return static_cast<std::int32_t>(*integer);
    if (const auto* real = as<double>())
        return clamped(*real);
    if (const auto* text = as<std::string>())
        return integerOf(*text);
    return 0;
}

} // namespace noctara
