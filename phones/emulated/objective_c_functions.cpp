/// libobjc, and the method-hooking loader.
#include "phones/emulated/emulated_phone.h"
#include "phones/emulated/process.h"
#include "phones/emulated/system_libraries.h"

namespace noctara::emulated {

void addObjectiveC(Process& process) {
    const auto add = [&](const char* symbol, NativeFunction function) {
        process.addFunction("/usr/lib/libobjc.A.dylib", symbol, std::move(function));
    };
    add("_objc_msgSend", [](NativeCall& c) { c.process.objectiveC.send(c.cpu); });
    add("_objc_msgSendSuper2", [](NativeCall& c) { c.process.objectiveC.sendSuper(c.cpu); });
    add("_objc_alloc", [](NativeCall& c) {
        const Receiver receiver = c.process.objectiveC.receiver(c.word(0));
        c.returnsObject(&c.process.objectiveC.allocate(*receiver.aClass, c.cpu));
    });
    add("_objc_retain",
        [](NativeCall& c) { c.returnsObject(c.process.objectiveC.retain(c.object(0))); });
    add("_objc_release", [](NativeCall& c) { c.process.objectiveC.release(c.object(0), c.cpu); });
    add("_objc_autorelease", [](NativeCall& c) { c.returnsAutoreleased(c.object(0)); });
    add("_objc_autoreleasePoolPush",
        [](NativeCall& c) { c.returns(c.process.objectiveC.pushPool(c.cpu)); });
    add("_objc_autoreleasePoolPop",
        [](NativeCall& c) { c.process.objectiveC.popPool(c.word(0), c.cpu); });
    add("_objc_enumerationMutation",
        [](NativeCall&) { throw Fault("a collection changes during a loop over it"); });
    add("_objc_getClass", [](NativeCall& c) {
        const std::string name = c.text(0);
        const bool isThere =
            c.process.phone.process.findClass(name.c_str()) && !c.process.lacks(name);
        Class* const found = isThere ? c.process.objectiveC.classNamed(name) : nullptr;
        c.returns(found ? found->address : 0);
    });
    add("_sel_registerName",
        [](NativeCall& c) { c.returns(c.process.objectiveC.selector(c.text(0))); });

    // A selector is the address of its name.
    add("_sel_getName", [](NativeCall& c) { c.returns(c.word(0)); });

    process.addFunction("/usr/lib/libsubstrate.dylib", "_MSHookMessageEx", [](NativeCall& c) {
        const std::string& selector = c.selectorArgument(1);
        Class* const hooked = c.word(0) ? c.process.objectiveC.receiver(c.word(0)).aClass : nullptr;
        c.process.phone.recorder.call(
            Operation::MSHookMessageEx,
            {hooked ? CallValue(hooked->name) : CallValue(), std::string_view(selector)});
        const Address previous =
            hooked ? c.process.objectiveC.replace(*hooked, selector, c.word(2)) : 0;
        if (previous != 0)
            c.store(c.word(3), previous);
    });
}

} // namespace noctara::emulated
