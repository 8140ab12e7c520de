/// The values that a property list holds, as the phone's services hand them over.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace noctara {

/// An instant of the wall clock.
struct Date {
    double secondsSince1970 = 0; ///< UTC, leap seconds not counted; may have a fraction.

    friend auto operator<=>(const Date&, const Date&) = default;
};

class PropertyList;
struct DictionaryEntry;

using Data = std::vector<std::uint8_t>;
using Array = std::vector<PropertyList>;

/// Key strings, each with one value, in an order of its own: that of the file, or of insertion.
class Dictionary {
public:
    Dictionary();
    Dictionary(std::initializer_list<DictionaryEntry> entries);
    Dictionary(const Dictionary&);
    Dictionary(Dictionary&&) noexcept;
    Dictionary& operator=(const Dictionary&);
    Dictionary& operator=(Dictionary&&) noexcept;
    ~Dictionary();

    /// The value under `key`; null when there is none. Valid until the dictionary changes.
    const PropertyList* find(std::string_view key) const;

    /// Replaces the value under `key` in its place, or appends a new key.
    void set(std::string_view key, PropertyList value);

    /// False when there was no such key.
    bool remove(std::string_view key);

    std::size_t size() const;
    bool empty() const { return size() == 0; }
    std::vector<DictionaryEntry>::const_iterator begin() const;
    std::vector<DictionaryEntry>::const_iterator end() const;

    friend bool operator==(const Dictionary&, const Dictionary&);

private:
    std::vector<DictionaryEntry> entries;
};

/// What a value was made of on a phone, which can say more than the value: an integer beyond 63
/// bits, the sign of -0.0. Each phone derives its own and knows it again by its type.
class PhoneObject {
public:
    virtual ~PhoneObject() = default;
};

/// One value of a property list.
///
/// A value that a phone read carries the phone's own object, so that a file that is read and
/// written again keeps what it said. Copies carry the same object; comparison ignores it.
class PropertyList {
public:
    using Value =
        std::variant<bool, std::int64_t, double, std::string, Date, Data, Array, Dictionary>;

    PropertyList(bool truth) : value(truth) {}
    PropertyList(std::int32_t integer) : value(std::int64_t{integer}) {}
    PropertyList(std::int64_t integer) : value(integer) {}
    /// A negative zero is taken for zero: not every writer of property lists keeps its sign.
    PropertyList(double real) : value(real + 0.0) {}
    PropertyList(const char* text) : value(std::string(text)) {}
    PropertyList(std::string text) : value(std::move(text)) {}
    PropertyList(Date date) : value(date) {}
    PropertyList(Data data) : value(std::move(data)) {}
    PropertyList(Array array) : value(std::move(array)) {}
    PropertyList(Dictionary dictionary) : value(std::move(dictionary)) {}

    PropertyList(PropertyList made, std::shared_ptr<const PhoneObject> of) :
        value(std::move(made.value)), origin(std::move(of)) {}

    /// The value as a `T` of the variant; null when it is of another type.
    template <typename T>
    const T* as() const {
        return std::get_if<T>(&value);
    }
    /// Likewise, to be changed: the value no longer carries an object of the phone.
    template <typename T>
    T* as() {
        origin.reset();
        return std::get_if<T>(&value);
    }

    /// The object of the phone that the value was made of, if it is a `T`; otherwise null.
    template <typename T>
    const T* madeOf() const {
        return dynamic_cast<const T*>(origin.get());
    }

    /// The platform's truth: a number that is not zero (not-a-number included); a string in which
    /// Y, y, T, t or 1 to 9 follows leading blanks, an optional sign and zeros. Anything else is
    /// false.
    bool boolValue() const;

    /// The platform's 32-bit integer: of a larger integer the low 32 bits; a real truncated, one
    /// out of range clamped, not-a-number 0; of a string its leading decimal integer, clamped.
    /// Anything else is 0.
    std::int32_t intValue() const;

    const Value& variant() const { return value; }

    friend bool operator==(const PropertyList&, const PropertyList&);

private:
    Value value;
    std::shared_ptr<const PhoneObject> origin;
};

struct DictionaryEntry {
    std::string key;
    PropertyList value;

    friend bool operator==(const DictionaryEntry&, const DictionaryEntry&) = default;
};

} // namespace noctara
