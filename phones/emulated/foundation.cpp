/// NSObject, and the classes of the process: bundles, notifications, threads and the log.
#include "phones/emulated/foundation.h"
#include "phones/emulated/emulated_phone.h"
#include "phones/emulated/formatting.h"
#include "phones/emulated/foundation_classes.h"
#include "phones/emulated/process.h"
#include "phones/emulated/system_libraries.h"

namespace noctara::emulated {

namespace {

struct ThreadObject final : Object {
    Object* target = nullptr;
    Address selector = 0;
    std::string name;
    std::vector<Object*> owned() const override {
        return target ? std::vector<Object*>{target} : std::vector<Object*>{};
    }
};

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

         {"description", [](Message& m) {
              m.returnsAutoreleased(&m.make("NSString", StringObject(descriptionOf(m.self()))));
          }}});
    process.addData(objc, "__objc_empty_cache", 16);
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

void addFoundation(Process& process) {
    addRoot(process);
    addTexts(process);
    addDates(process);
    addCollections(process);
    addFiles(process);
    addProcess(process);
}

} // namespace noctara::emulated
