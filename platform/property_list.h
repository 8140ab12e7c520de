/// The values of property lists, as the services of a phone take and return them.
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

/// A map from strings to values. It keeps the order of the file, or of insertion.
class Dictionary {
public:
    Dictionary();
    Dictionary(std::initializer_list<DictionaryEntry> entries);
    Dictionary(const Dictionary&);
    Dictionary(Dictionary&&) noexcept;
    Dictionary& operator=(const Dictionary&);
    Dictionary& operator=(Dictionary&&) noexcept;
    ~Dictionary();

    /// The value of `key`, or null. The pointer is valid until the dictionary changes.
    const PropertyList* find(std::string_view key) const;
    PropertyList* find(std::string_view key);

    /// Replaces the value of `key` without moving it, or appends a new key.
    void set(std::string_view key, PropertyList value);

    /// False if there was no such key.
    bool remove(std::string_view key);

    std::size_t size() const;
    bool empty() const { return size() == 0; }
    std::vector<DictionaryEntry>::const_iterator begin() const;
    std::vector<DictionaryEntry>::const_iterator end() const;

    friend bool operator==(const Dictionary&, const Dictionary&);

private:
    std::vector<DictionaryEntry> entries;
};

/// The phone's own representation of a value. It can hold more than the value does, such as an
/// integer beyond 63 bits or the sign of -0.0. Each implementation of a phone derives its own class
/// and recognizes its objects by their type.
class PhoneObject {
public:
    virtual ~PhoneObject() = default;
};

/// One value of a property list.
///
/// A value that a phone has read can keep the phone's own object, so that reading and writing a
/// file loses nothing. Copies share the object. Comparison ignores it.
class PropertyList {
public:
    using Value =
        std::variant<bool, std::int64_t, double, std::string, Date, Data, Array, Dictionary>;

    PropertyList(bool truth) : value(truth) {}
    PropertyList(std::int32_t integer) : value(std::int64_t{integer}) {}
    PropertyList(std::int64_t integer) : value(integer) {}
    /// -0.0 becomes 0.0, because not every writer of property lists keeps the sign.
    PropertyList(double real) : value(real + 0.0) {}
    PropertyList(const char* text) : value(std::string(text)) {}
    PropertyList(std::string text) : value(std::move(text)) {}
    PropertyList(Date date) : value(date) {}
    PropertyList(Data data) : value(std::move(data)) {}
    PropertyList(Array array) : value(std::move(array)) {}
    PropertyList(Dictionary dictionary) : value(std::move(dictionary)) {}

    PropertyList(PropertyList made, std::shared_ptr<const PhoneObject> of) :
        value(std::move(made.value)), origin(std::move(of)) {}

    /// The value as a `T` of the variant. Null if it has another type.
    template <typename T>
    const T* as() const {
        return std::get_if<T>(&value);
    }
    /// As above, for changing the value. Drops the phone's object, which no longer matches.
    template <typename T>
    T* as() {
        origin.reset();
        return std::get_if<T>(&value);
    }

    /// The phone's object of the value, if it is a `T`; otherwise null.
    template <typename T>
    const T* madeOf() const {
        return dynamic_cast<const T*>(origin.get());
    }

    /// The platform's `boolValue`. True for a number other than zero (NaN included), and for a
    /// string in which Y, y, T, t or 1 to 9 follows optional blanks, an optional sign and optional
    /// zeros. False for anything else.
    bool boolValue() const;

    /// The platform's `intValue`. An integer gives its low 32 bits. A real is truncated and
    /// clamped; NaN gives 0. A string gives its leading decimal integer, clamped. Anything else
    /// gives 0.
    std::int32_t intValue() const;

    const Value& variant() const { return value; }

    friend bool operator==(const PropertyList&, const PropertyList&);

private:
    Value value;
    std::shared_ptr<const PhoneObject> origin;
};

struct DictionaryEntry {
    // Overloads, because a parameter by value would cost a second move.
    DictionaryEntry(std::string_view name, PropertyList&& content) :
        key(name), value(std::move(content)) {}
    DictionaryEntry(std::string_view name, const PropertyList& content) :
        key(name), value(content) {}

    std::string key;
    PropertyList value;

    friend bool operator==(const DictionaryEntry&, const DictionaryEntry&) = default;
};

} // namespace noctara
