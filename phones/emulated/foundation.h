/// The objects of Foundation that the library uses, and their values in the core's types.
#pragma once

#include "phones/emulated/objective_c.h"
#include "platform/property_list.h"

#include <string>
#include <utility>
#include <vector>

namespace noctara::emulated {

class NativeCall;

struct StringObject final : Object {
    StringObject() = default;
    explicit StringObject(std::string itsText) : text(std::move(itsText)) {}
    std::string text; ///< UTF-8.
};

struct NumberObject final : Object {
    NumberObject() = default;
    explicit NumberObject(PropertyList itsValue) : value(std::move(itsValue)) {}
    PropertyList value = false; ///< A truth, an integer or a real.
};

struct DateObject final : Object {
    DateObject() = default;
    explicit DateObject(Date itsDate) : date(itsDate) {}
    Date date;
};

struct DataObject final : Object {
    std::string bytes;
    std::string path;      ///< Of the file that it was read from. Empty if there is none.
    Address inProcess = 0; ///< A copy of the bytes for the library, made when it asks.
    void destroy(Process& process) override;
};

struct ArrayObject final : Object {
    std::vector<Object*> items;
    std::vector<Object*> owned() const override { return items; }
};

struct DictionaryObject final : Object {
    std::vector<std::pair<Object*, Object*>> entries;
    /// A value that is no dictionary of this program: the file's own nodes.
    std::vector<Object*> owned() const override;
    Object* find(const std::string& key) const;
};

/// The object of a string constant in the library; null if the address is none.
Object* constantString(Process& process, Address address);

/// The text of a string object. Throws Fault for another object.
std::string textOf(const Object* object);

/// The path of an NSURL. Throws Fault for another object.
std::string pathOfUrl(const Object* object);

/// A new object with one reference. A value that came from an object gives that object's content.
Object* objectOf(NativeCall& call, const PropertyList& value);
PropertyList valueOf(const Object* object);
Dictionary dictionaryOf(const Object* object);

} // namespace noctara::emulated
