/// NSArray and NSDictionary.
#include "phones/emulated/emulated_phone.h"
#include "phones/emulated/foundation_classes.h"
#include "phones/emulated/process.h"

#include <algorithm>

namespace noctara::emulated {

namespace {

/// Where a collection has the count of its changes, behind its class. A loop over it reads the
/// count.
constexpr Address changesInObject = 8;

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

} // namespace

void addCollections(Process& process) {
    Class& array = process.addClass(coreFoundation, "NSArray");
    array.make = maker<ArrayObject>();
    addMethods(array, false,
               {{"containsObject:",
                 [](Message& m) {
                     const auto& items = m.self<ArrayObject>().items;
                     Object* const wanted = m.object(0);
                     m.returnsFlag(std::any_of(items.begin(), items.end(), [&](const Object* item) {
                         return areEqual(item, wanted);
                     }));
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
               {{"objectForKey:",
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

} // namespace noctara::emulated
