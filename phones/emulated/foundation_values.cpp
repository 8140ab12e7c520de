/// The values of Foundation's objects in the types of the core, and back.
#include "phones/emulated/foundation_classes.h"
#include "phones/emulated/process.h"

namespace noctara::emulated {

void addMethods(Class& to, bool classMethods,
                std::initializer_list<std::pair<const char*, NativeMethod>> methods) {
    for (const auto& [selector, native] : methods)
        (classMethods ? to.classMethods : to.instanceMethods)[selector] = {0, native};
}

bool areEqual(const Object* one, const Object* other) {
    if (one == other || !one || !other)
        return one == other;
    const auto* text = dynamic_cast<const StringObject*>(one);
    const auto* otherText = dynamic_cast<const StringObject*>(other);
    if (text && otherText)
        return text->text == otherText->text;
    const auto* number = dynamic_cast<const NumberObject*>(one);
    const auto* otherNumber = dynamic_cast<const NumberObject*>(other);
    return number && otherNumber && number->value == otherNumber->value;
}

std::string descriptionOf(const Object& object) {
    if (const auto* string = dynamic_cast<const StringObject*>(&object))
        return string->text;
    if (const auto* number = dynamic_cast<const NumberObject*>(&object)) {
        if (const auto* truth = number->value.as<bool>())
            return *truth ? "1" : "0";
        if (const auto* integer = number->value.as<std::int64_t>())
            return std::to_string(*integer);
        return std::to_string(*number->value.as<double>());
    }
    return "<" + object.isa->name + ">";
}

Object* truthObject(Process& process, bool truth) {
    auto& number = static_cast<NumberObject&>(process.shared(truth ? "NSTrue" : "NSFalse"));
    number.value = truth;
    return &number;
}

Object* required(Object* object, const char* what) {
    if (!object)
        throw Fault(std::string(what) + " is nil");
    return object;
}

void DataObject::destroy(Process& process) {
    process.heap.free(inProcess);
}

std::vector<Object*> DictionaryObject::owned() const {
    std::vector<Object*> all;
    for (const auto& [key, value] : entries) {
        all.push_back(key);
        all.push_back(value);
    }
    return all;
}

Object* DictionaryObject::find(const std::string& wanted) const {
    for (const auto& [key, value] : entries)
        if (textOf(key) == wanted)
            return value;
    return nullptr;
}

Object* constantString(Process& process, Address address) {
    // The compiler's form: class, flags, text, length in bytes.
    const auto [start, size] = process.library.section("__DATA,__cfstring");
    constexpr Address constantSize = 32;
    if (address < process.slide + start || address >= process.slide + start + size ||
        (address - process.slide - start) % constantSize != 0)
        return nullptr;
    const Memory& memory = process.memory;
    constexpr std::uint64_t asciiText = 0x7c8;
    if (memory.read<std::uint64_t>(address + 8) != asciiText)
        throw Fault("a string constant is not ASCII, which the emulated phone does not read");
    auto constant = std::make_unique<StringObject>(
        memory.bytes(memory.read<Address>(address + 16), memory.read<std::uint64_t>(address + 24)));
    constant->isConstant = true;
    return &process.objectiveC.addConstant(std::move(constant),
                                           process.objectiveC.existingClass("NSString"), address);
}

std::string textOf(const Object* object) {
    const auto* const string = dynamic_cast<const StringObject*>(object);
    if (!string)
        throw Fault(object ? "an object of class " + object->isa->name + " is not a string"
                           : "a string is nil");
    return string->text;
}

std::string pathOfUrl(const Object* object) {
    const auto* const url = dynamic_cast<const UrlObject*>(object);
    if (!url)
        throw Fault("a URL is none");
    return url->path;
}

Object* objectOf(NativeCall& call, const PropertyList& value) {
    if (const auto* truth = value.as<bool>())
        return truthObject(call.process, *truth);
    if (value.as<std::int64_t>() || value.as<double>())
        return &call.make("NSNumber", NumberObject(value));
    if (const auto* text = value.as<std::string>())
        return &call.make("NSString", StringObject(*text));
    if (const auto* date = value.as<Date>())
        return &call.make("NSDate", DateObject(*date));
    if (const auto* bytes = value.as<Data>()) {
        auto& data = call.make<DataObject>("NSData");
        data.bytes.assign(bytes->begin(), bytes->end());
        return &data;
    }
    if (const auto* array = value.as<Array>()) {
        auto& made = call.make<ArrayObject>("NSArray");
        for (const auto& item : *array)
            made.items.push_back(objectOf(call, item));
        return &made;
    }
    auto& made = call.make<DictionaryObject>("NSDictionary");
    for (const auto& [key, item] : *value.as<Dictionary>())
        made.entries.emplace_back(&call.make("NSString", StringObject(key)), objectOf(call, item));
    return &made;
}

PropertyList valueOf(const Object* object) {
    if (const auto* number = dynamic_cast<const NumberObject*>(object))
        return number->value;
    if (const auto* date = dynamic_cast<const DateObject*>(object))
        return date->date;
    if (const auto* data = dynamic_cast<const DataObject*>(object))
        return Data(data->bytes.begin(), data->bytes.end());
    if (const auto* array = dynamic_cast<const ArrayObject*>(object)) {
        Array values;
        for (const Object* const item : array->items)
            values.push_back(valueOf(item));
        return values;
    }
    if (dynamic_cast<const DictionaryObject*>(object))
        return dictionaryOf(object);
    return textOf(object);
}

Dictionary dictionaryOf(const Object* object) {
    const auto* const dictionary = dynamic_cast<const DictionaryObject*>(object);
    if (!dictionary)
        throw Fault("an object is not a dictionary");
    Dictionary values;
    for (const auto& [key, value] : dictionary->entries)
        values.set(textOf(key), valueOf(value));
    return values;
}

} // namespace noctara::emulated
