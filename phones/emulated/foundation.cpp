#include "phones/emulated/foundation.h"

#include "phones/emulated/emulated_phone.h"
#include "phones/emulated/formatting.h"
#include "phones/emulated/process.h"
#include "phones/emulated/system_libraries.h"
#include "platform/utf8.h"

#include <algorithm>
#include <limits>

namespace noctara::emulated {

namespace {

const std::string coreFoundation = "/System/Library/Frameworks/CoreFoundation.framework/"
                                   "CoreFoundation";
const std::string foundation = "/System/Library/Frameworks/Foundation.framework/Foundation";

constexpr std::uint64_t utf8Encoding = 4;
constexpr std::uint64_t latin1Encoding = 5;

/// A value of a component that is not set.
constexpr std::int64_t undefinedComponent = std::numeric_limits<std::int64_t>::max();

struct UrlObject final : Object {
    std::string path;
};

struct DateComponentsObject final : Object {
    std::int64_t year = undefinedComponent;
    std::int64_t month = undefinedComponent;
    std::int64_t day = undefinedComponent;
    std::int64_t hour = undefinedComponent;
    std::int64_t minute = undefinedComponent;
    std::int64_t second = undefinedComponent;
};

struct ThreadObject final : Object {
    Object* target = nullptr;
    Address selector = 0;
    std::string name;
    std::vector<Object*> owned() const override {
        return target ? std::vector<Object*>{target} : std::vector<Object*>{};
    }
};

/// A data or collection object of the library keeps a count of its changes behind its class, which
/// a loop over a collection reads.
constexpr Address changesInObject = 8;

template <typename Content>
std::function<std::unique_ptr<Object>()> maker() {
    return [] { return std::make_unique<Content>(); };
}

void addMethods(Class& to, bool classMethods,
                std::initializer_list<std::pair<const char*, NativeMethod>> methods) {
    for (const auto& [selector, native] : methods)
        (classMethods ? to.classMethods : to.instanceMethods)[selector] = {0, native};
}

std::size_t utf16Length(std::string_view text) {
    std::size_t length = 0;
    while (!text.empty()) {
        const auto character = takeUtf8(text);
        length += character && *character > 0xffff ? 2 : 1;
    }
    return length;
}

std::string fromLatin1(const std::string& bytes) {
    std::string text;
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        if (code < 0x80) {
            text += byte;
        } else {
            text += static_cast<char>(0xc0 | code >> 6);
            text += static_cast<char>(0x80 | (code & 0x3f));
        }
    }
    return text;
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

/// The object for a truth: there are two.
Object* truthObject(Process& process, bool truth) {
    auto& number = static_cast<NumberObject&>(process.shared(truth ? "NSTrue" : "NSFalse"));
    number.value = truth;
    return &number;
}

/// Performs countByEnumeratingWithState:objects:count:, which a loop over a collection calls.
void enumerate(Message& message, const std::vector<Object*>& items) {
    const Memory& memory = message.process.memory;
    const Address state = message.word(0);
    const Address buffer = message.word(1);
    const std::uint64_t room = message.word(2);
    std::uint64_t done = memory.read<std::uint64_t>(state);
    std::uint64_t count = 0;
    for (; count < room && done < items.size(); ++count, ++done)
        memory.write(buffer + 8 * count, items[done]->address);
    memory.write(state, done);
    memory.write(state + 8, buffer);
    memory.write(state + 16, message.self().address + changesInObject);
    message.returns(count);
}

void noteChange(Message& message) {
    const Address changes = message.self().address + changesInObject;
    message.process.memory.write(changes, message.process.memory.read<std::uint64_t>(changes) + 1);
}

Object* required(Object* object, const char* what) {
    if (!object)
        throw Fault(std::string(what) + " is nil");
    return object;
}

void addRoot(Process& process) {
    const std::string objc = "/usr/lib/libobjc.A.dylib";
    Class& root = process.addClass(objc, "NSObject", "");
    root.make = maker<Object>();
    addMethods(root, true,
               {{"alloc",
                 [](Message& m) {
                     m.returnsObject(&m.process.objectiveC.allocate(*m.receiver.aClass, m.cpu));
                 }},
                {"class", [](Message& m) { m.returns(m.receiver.aClass->address); }}});
    addMethods(
        root, false,
        {{"init", [](Message& m) { m.returnsReceiver(); }},
         {"retain",
          [](Message& m) {
              m.process.objectiveC.retain(m.receiver.object);
              m.returnsReceiver();
          }},
         {"release", [](Message& m) { m.process.objectiveC.release(m.receiver.object, m.cpu); }},
         {"autorelease",
          [](Message& m) {
              m.process.objectiveC.autorelease(m.receiver.object, m.cpu);
              m.returnsReceiver();
          }},
         {"dealloc", [](Message& m) { m.process.objectiveC.deallocate(m.self(), m.cpu); }},
         {"class", [](Message& m) { m.returns(m.receiver.aClass->address); }},
         {"isKindOfClass:",
          [](Message& m) {
              const Receiver asked = m.process.objectiveC.receiver(m.word(0));
              m.returnsFlag(m.receiver.object && !asked.object &&
                            m.receiver.aClass->isKindOf(*asked.aClass));
          }},
         {"respondsToSelector:",
          [](Message& m) {
              m.returnsFlag(m.process.objectiveC.find(*m.receiver.aClass, !m.receiver.object,
                                                      m.selectorArgument(0)) != nullptr);
          }},
         {"performSelector:",
          [](Message& m) {
              m.cpu.setX(1, m.word(0));
              m.process.objectiveC.send(m.cpu);
          }},
         {"performSelectorOnMainThread:withObject:waitUntilDone:",
          [](Message& m) {
              if (!m.flag(2) || m.word(1) != 0)
                  throw Fault("the emulated main thread performs only selectors that are waited "
                              "for, without an object");
              const std::string& selector = m.selectorArgument(0);
              m.process.phone.performOnMainThread(
                  selector, [&] { m.process.send(*m.process.main, m.self().address, selector); });
          }},
         {"isEqual:", [](Message& m) { m.returnsFlag(areEqual(m.receiver.object, m.object(0))); }},
         {"description", [](Message& m) {
              m.returnsAutoreleased(&m.make("NSString", StringObject(descriptionOf(m.self()))));
          }}});
    process.addData(objc, "__objc_empty_cache", 16);
}

void addStrings(Process& process) {
    Class& string = process.addClass(foundation, "NSString");
    string.make = maker<StringObject>();
    addMethods(string, true,
               {{"stringWithUTF8String:", [](Message& m) {
                     m.returnsAutoreleased(&m.make("NSString", StringObject(m.text(0))));
                 }}});
    addMethods(string, false,
               {{"initWithBytes:length:encoding:",
                 [](Message& m) {
                     const std::string bytes = m.process.memory.bytes(m.word(0), m.word(1));
                     auto& self = m.self<StringObject>();
                     if (m.word(2) == latin1Encoding) {
                         self.text = fromLatin1(bytes);
                     } else if (m.word(2) == utf8Encoding && isUtf8(bytes)) {
                         self.text = bytes;
                     } else {
                         m.process.objectiveC.release(&self, m.cpu);
                         return m.returns(0);
                     }
                     m.returnsReceiver();
                 }},
                {"length", [](Message& m) { m.returns(utf16Length(m.self<StringObject>().text)); }},
                {"UTF8String",
                 [](Message& m) {
                     // It lives as long as the pool, as an autoreleased object of its own.
                     auto& copy = m.make<DataObject>("NSData");
                     copy.bytes = m.self<StringObject>().text + '\0';
                     copy.inProcess = m.process.heap.allocate(copy.bytes.size(), m.place());
                     std::memcpy(m.process.memory.at(copy.inProcess, copy.bytes.size()),
                                 copy.bytes.data(), copy.bytes.size());
                     m.process.objectiveC.autorelease(&copy, m.cpu);
                     m.returns(copy.inProcess);
                 }},
                {"dataUsingEncoding:allowLossyConversion:", [](Message& m) {
                     if (m.word(0) != utf8Encoding)
                         throw Fault("a string is converted to another encoding than UTF-8");
                     auto& data = m.make<DataObject>("NSData");
                     data.bytes = m.self<StringObject>().text;
                     m.returnsAutoreleased(&data);
                 }}});
    // String constants in the library have this class.
    process.addData(coreFoundation, "___CFConstantStringClassReference", 40);
}

void addNumbers(Process& process) {
    Class& number = process.addClass(foundation, "NSNumber");
    number.make = maker<NumberObject>();
    process.addClass("", "NSTrue", "NSNumber");
    process.addClass("", "NSFalse", "NSNumber");
    const auto make = [](Message& m, PropertyList value) {
        m.returnsAutoreleased(&m.make("NSNumber", NumberObject(std::move(value))));
    };
    addMethods(number, true,
               {{"numberWithBool:",
                 [](Message& m) { m.returnsObject(truthObject(m.process, m.flag(0))); }},
                {"numberWithInt:",
                 [make](Message& m) { make(m, static_cast<std::int32_t>(m.number(0))); }},
                {"numberWithLongLong:",
                 [make](Message& m) { make(m, static_cast<std::int64_t>(m.word(0))); }},
                {"numberWithDouble:", [make](Message& m) { make(m, m.real(0)); }}});
    addMethods(
        number, false,
        {{"objCType",
          [truth = process.constantText("c"), integer = process.constantText("q"),
           real = process.constantText("d")](Message& m) {
              const auto& value = m.self<NumberObject>().value;
              m.returns(value.as<bool>() ? truth : value.as<std::int64_t>() ? integer : real);
          }},
         {"boolValue", [](Message& m) { m.returnsFlag(m.self<NumberObject>().value.boolValue()); }},
         {"doubleValue",
          [](Message& m) {
              const auto& value = m.self<NumberObject>().value;
              const auto* real = value.as<double>();
              const auto* integer = value.as<std::int64_t>();
              m.returnsReal(real      ? *real
                            : integer ? static_cast<double>(*integer)
                                      : value.boolValue());
          }},
         {"longLongValue", [](Message& m) {
              const auto& value = m.self<NumberObject>().value;
              const auto* integer = value.as<std::int64_t>();
              m.returns(integer ? static_cast<std::uint64_t>(*integer)
                                : static_cast<std::uint64_t>(std::int64_t{value.intValue()}));
          }}});
}

void addDates(Process& process) {
    Class& date = process.addClass(coreFoundation, "NSDate");
    date.make = maker<DateObject>();
    addMethods(date, true,
               {{"date",
                 [](Message& m) {
                     m.returnsAutoreleased(&m.make("NSDate", DateObject(m.process.phone.now())));
                 }},
                {"dateWithTimeIntervalSince1970:", [](Message& m) {
                     m.returnsAutoreleased(&m.make("NSDate", DateObject(Date{m.real(0)})));
                 }}});
    addMethods(date, false, {{"timeIntervalSince1970", [](Message& m) {
                                  m.returnsReal(m.self<DateObject>().date.secondsSince1970);
                              }}});

    Class& components = process.addClass(coreFoundation, "NSDateComponents");
    components.make = maker<DateComponentsObject>();
    const auto field = [&](const char* getter, const char* setter,
                           std::int64_t DateComponentsObject::*member) {
        addMethods(
            components, false,
            {{getter,
              [member](Message& m) {
                  m.returns(static_cast<std::uint64_t>(m.self<DateComponentsObject>().*member));
              }},
             {setter, [member](Message& m) {
                  m.self<DateComponentsObject>().*member = static_cast<std::int64_t>(m.word(0));
              }}});
    };
    field("year", "setYear:", &DateComponentsObject::year);
    field("month", "setMonth:", &DateComponentsObject::month);
    field("day", "setDay:", &DateComponentsObject::day);
    field("hour", "setHour:", &DateComponentsObject::hour);
    field("minute", "setMinute:", &DateComponentsObject::minute);
    field("second", "setSecond:", &DateComponentsObject::second);

    Class& calendar = process.addClass(coreFoundation, "NSCalendar");
    addMethods(calendar, true, {{"currentCalendar", [](Message& m) {
                                     m.returnsObject(&m.process.shared("NSCalendar"));
                                 }}});
    addMethods(
        calendar, false,
        {{"components:fromDate:",
          [](Message& m) {
              constexpr std::uint64_t yearToSecond = 4 | 8 | 16 | 32 | 64 | 128;
              if (m.word(0) != yearToSecond)
                  throw Fault("a calendar is asked for other units than year to second");
              const auto& from = dynamic_cast<DateObject&>(*required(m.object(1), "a date"));
              const auto parts = m.process.phone.timeZone().components(from.date);
              auto& made = m.make<DateComponentsObject>("NSDateComponents");
              made.year = parts.year;
              made.month = parts.month;
              made.day = parts.day;
              made.hour = parts.hour;
              made.minute = parts.minute;
              made.second = parts.second;
              m.returnsAutoreleased(&made);
          }},
         {"dateFromComponents:", [](Message& m) {
              const auto& from =
                  dynamic_cast<DateComponentsObject&>(*required(m.object(0), "the components"));
              const auto part = [](std::int64_t value, std::int32_t otherwise) {
                  return value == undefinedComponent ? otherwise : static_cast<std::int32_t>(value);
              };
              m.returnsAutoreleased(
                  &m.make("NSDate",
                          DateObject(m.process.phone.timeZone().date(
                              {part(from.year, 1), part(from.month, 1), part(from.day, 1),
                               part(from.hour, 0), part(from.minute, 0), part(from.second, 0)}))));
          }}});
}

void addCollections(Process& process) {
    Class& array = process.addClass(coreFoundation, "NSArray");
    array.make = maker<ArrayObject>();
    addMethods(array, false,
               {{"count", [](Message& m) { m.returns(m.self<ArrayObject>().items.size()); }},
                {"containsObject:",
                 [](Message& m) {
                     const auto& items = m.self<ArrayObject>().items;
                     Object* const wanted = m.object(0);
                     m.returnsFlag(std::any_of(items.begin(), items.end(), [&](const Object* item) {
                         return areEqual(item, wanted);
                     }));
                 }},
                {"objectAtIndex:",
                 [](Message& m) {
                     const auto& items = m.self<ArrayObject>().items;
                     if (m.word(0) >= items.size())
                         throw Fault("an index is beyond the end of an array");
                     m.returnsObject(items[m.word(0)]);
                 }},
                {"countByEnumeratingWithState:objects:count:",
                 [](Message& m) { enumerate(m, m.self<ArrayObject>().items); }}});
    Class& mutableArray = process.addClass(coreFoundation, "NSMutableArray", "NSArray");
    const NativeMethod makeArray = [](Message& m) {
        m.returnsAutoreleased(&m.make<ArrayObject>("NSMutableArray"));
    };
    addMethods(mutableArray, true, {{"array", makeArray}, {"arrayWithCapacity:", makeArray}});
    addMethods(mutableArray, false,
               {{"addObject:", [](Message& m) {
                     m.self<ArrayObject>().items.push_back(
                         m.process.objectiveC.retain(required(m.object(0), "an item of an array")));
                     noteChange(m);
                 }}});

    Class& dictionary = process.addClass(coreFoundation, "NSDictionary");
    dictionary.make = maker<DictionaryObject>();
    addMethods(dictionary, false,
               {{"count", [](Message& m) { m.returns(m.self<DictionaryObject>().entries.size()); }},
                {"objectForKey:",
                 [](Message& m) {
                     m.returnsObject(m.self<DictionaryObject>().find(textOf(m.object(0))));
                 }},
                {"countByEnumeratingWithState:objects:count:",
                 [](Message& m) {
                     std::vector<Object*> keys;
                     for (const auto& [key, value] : m.self<DictionaryObject>().entries)
                         keys.push_back(key);
                     enumerate(m, keys);
                 }},
                {"initWithContentsOfFile:",
                 [](Message& m) {
                     auto& self = m.self<DictionaryObject>();
                     const auto read = m.process.phone.files.readDictionary(textOf(m.object(0)));
                     if (!read) {
                         m.process.objectiveC.release(&self, m.cpu);
                         return m.returns(0);
                     }
                     for (const auto& [key, value] : *read)
                         self.entries.emplace_back(objectOf(m, key), objectOf(m, value));
                     m.returnsReceiver();
                 }},
                {"writeToFile:atomically:", [](Message& m) {
                     const std::string path = textOf(m.object(0));
                     const Dictionary content = dictionaryOf(m.receiver.object);
                     auto& files = m.process.phone.files;
                     if (m.flag(1))
                         return m.returnsFlag(files.writeDictionary(path, content));
                     // It can lose the file, so the trace tells it apart.
                     m.returnsFlag(m.process.phone.recorder.answer(
                         Operation::writeToFileInPlace, {path, &content},
                         files.writeByOthers(path, content)));
                 }}});
    Class& mutableDictionary =
        process.addClass(coreFoundation, "NSMutableDictionary", "NSDictionary");
    addMethods(mutableDictionary, true,
               {{"dictionaryWithCapacity:", [](Message& m) {
                     m.returnsAutoreleased(&m.make<DictionaryObject>("NSMutableDictionary"));
                 }}});
    addMethods(mutableDictionary, false,
               {{"setObject:forKey:", [](Message& m) {
                     auto& self = m.self<DictionaryObject>();
                     ObjectiveC& runtime = m.process.objectiveC;
                     Object* const value = runtime.retain(required(m.object(0), "a value"));
                     Object* const key = required(m.object(1), "a key");
                     noteChange(m);
                     for (auto& [known, old] : self.entries) {
                         if (areEqual(known, key)) {
                             runtime.release(std::exchange(old, value), m.cpu);
                             return;
                         }
                     }
                     self.entries.emplace_back(runtime.retain(key), value);
                 }}});
}

void addFiles(Process& process) {
    Class& data = process.addClass(coreFoundation, "NSData");
    data.make = maker<DataObject>();
    addMethods(data, true,
               {{"dataWithContentsOfFile:",
                 [](Message& m) {
                     // Parsing the data asks the phone for the file. Only then is the call
                     // recorded.
                     const std::string path = textOf(m.object(0));
                     if (!m.process.phone.files.isThere(path))
                         return m.returns(0);
                     auto& made = m.make<DataObject>("NSData");
                     made.path = path;
                     m.returnsAutoreleased(&made);
                 }},
                {"dataWithBytes:length:", [](Message& m) {
                     auto& made = m.make<DataObject>("NSData");
                     made.bytes = m.process.memory.bytes(m.word(0), m.word(1));
                     m.returnsAutoreleased(&made);
                 }}});
    addMethods(data, false,
               {{"length", [](Message& m) { m.returns(m.self<DataObject>().bytes.size()); }},
                {"bytes", [](Message& m) {
                     auto& self = m.self<DataObject>();
                     if (self.inProcess == 0 && !self.bytes.empty()) {
                         self.inProcess = m.process.heap.allocate(self.bytes.size(), m.place());
                         std::memcpy(m.process.memory.at(self.inProcess, self.bytes.size()),
                                     self.bytes.data(), self.bytes.size());
                     }
                     m.returns(self.inProcess);
                 }}});

    Class& serialization = process.addClass(foundation, "NSPropertyListSerialization");
    addMethods(serialization, true,
               {{"propertyListFromData:mutabilityOption:format:errorDescription:", [](Message& m) {
                     const auto* const read = dynamic_cast<DataObject*>(m.object(0));
                     const auto parsed =
                         m.process.phone.files.parse(read ? read->path : std::string());
                     if (parsed.value) {
                         Object* const value = objectOf(m, *parsed.value);
                         return m.returnsAutoreleased(value);
                     }
                     // The caller releases the description.
                     if (const Address error = m.word(3))
                         m.store(error, m.make("NSString", StringObject(parsed.error)).address);
                     m.returns(0);
                 }}});

    Class& files = process.addClass(foundation, "NSFileManager");
    addMethods(files, true, {{"defaultManager", [](Message& m) {
                                  m.returnsObject(&m.process.shared("NSFileManager"));
                              }}});
    addMethods(files, false, {{"fileExistsAtPath:", [](Message& m) {
                                   m.returnsFlag(m.process.phone.files.exists(textOf(m.object(0))));
                               }}});

    Class& url = process.addClass(coreFoundation, "NSURL");
    url.make = maker<UrlObject>();
    addMethods(url, true, {{"fileURLWithPath:", [](Message& m) {
                                auto& made = m.make<UrlObject>("NSURL");
                                made.path = textOf(m.object(0));
                                m.returnsAutoreleased(&made);
                            }}});
}

void addProcess(Process& process) {
    Class& bundle = process.addClass(foundation, "NSBundle");
    addMethods(bundle, true, {{"mainBundle", [](Message& m) {
                                   m.returnsObject(&m.process.shared("NSBundle"));
                               }}});
    addMethods(bundle, false,
               {{"bundleIdentifier", [](Message& m) {
                     m.returnsAutoreleased(&m.make(
                         "NSString", StringObject(m.process.phone.process.bundleIdentifier())));
                 }}});

    Class& center = process.addClass(foundation, "NSNotificationCenter");
    addMethods(center, true, {{"defaultCenter", [](Message& m) {
                                   m.returnsObject(&m.process.shared("NSNotificationCenter"));
                               }}});
    addMethods(center, false, {{"postNotificationName:object:userInfo:", [](Message& m) {
                                    m.process.phone.process.postInProcess(
                                        textOf(m.object(0)).c_str(), dictionaryOf(m.object(2)));
                                }}});

    Class& thread = process.addClass(foundation, "NSThread");
    thread.make = maker<ThreadObject>();
    addMethods(thread, true, {{"isMainThread", [](Message& m) {
                                   m.returnsFlag(&m.cpu == m.process.main.get());
                               }}});
    addMethods(thread, false,
               {{"initWithTarget:selector:object:",
                 [](Message& m) {
                     auto& self = m.self<ThreadObject>();
                     self.target = m.process.objectiveC.retain(m.object(0));
                     self.selector = m.word(1);
                     m.returnsReceiver();
                 }},
                {"setName:", [](Message& m) { m.self<ThreadObject>().name = textOf(m.object(0)); }},
                {"start", [](Message& m) {
                     auto& self = m.self<ThreadObject>();
                     m.process.objectiveC.retain(&self);
                     m.process.phone.startMonitor(self.name, [&process = m.process, &self] {
                         process.monitor->call(process.addressOf("_objc_msgSend"),
                                               {self.target->address, self.selector, 0});
                         process.objectiveC.release(&self, *process.monitor);
                     });
                 }}});

    process.addFunction(foundation, "_NSLog", [](NativeCall& call) {
        unsigned next = 0;
        call.process.phone.process.write(
            formatted(call.process, textOf(call.object(0)), [&] { return call.variadic(next++); }));
    });
}

} // namespace

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

void addFoundation(Process& process) {
    addRoot(process);
    addStrings(process);
    addNumbers(process);
    addDates(process);
    addCollections(process);
    addFiles(process);
    addProcess(process);
}

} // namespace noctara::emulated
