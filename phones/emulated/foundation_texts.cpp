/// NSString and NSNumber.
#include "phones/emulated/foundation_classes.h"
#include "phones/emulated/process.h"
#include "platform/utf8.h"

#include <cstring>

namespace noctara::emulated {

namespace {

constexpr std::uint64_t utf8Encoding = 4;
constexpr std::uint64_t latin1Encoding = 5;

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

} // namespace

void addTexts(Process& process) {
    addStrings(process);
    addNumbers(process);
}

} // namespace noctara::emulated
