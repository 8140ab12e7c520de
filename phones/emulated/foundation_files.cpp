/// NSData, property lists, NSFileManager and NSURL.
#include "phones/emulated/emulated_phone.h"
#include "phones/emulated/foundation_classes.h"
#include "phones/emulated/process.h"

#include <cstring>

namespace noctara::emulated {

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
                     std::string error;
                     const auto parsed =
                         m.process.phone.files.parse(read ? read->path : std::string(), error);
                     if (parsed) {
                         Object* const value = objectOf(m, *parsed);
                         return m.returnsAutoreleased(value);
                     }
                     // The caller releases the description.
                     if (const Address description = m.word(3))
                         m.store(description, m.make("NSString", StringObject(error)).address);
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

} // namespace noctara::emulated
