#include "phones/emulated/objective_c.h"

#include "phones/emulated/call.h"
#include "phones/emulated/foundation.h"
#include "phones/emulated/process.h"

#include <algorithm>
#include <utility>

namespace noctara::emulated {

namespace {

// The layout of the class data that the compiler writes, in 64-bit Mach-O files.
constexpr Address classSuperclass = 8;
constexpr Address classData = 32;
constexpr Address dataInstanceSize = 8;
constexpr Address dataName = 24;
constexpr Address dataMethods = 32;
constexpr Address categoryClass = 8;
constexpr Address categoryInstanceMethods = 16;
constexpr Address categoryClassMethods = 24;
constexpr std::uint32_t methodSize = 24;

/// What the runtime of a phone keeps in the lowest bits of `data`.
constexpr Address dataFlags = 7;

} // namespace

bool Class::isKindOf(const Class& other) const {
    for (const Class* one = this; one; one = one->superclass)
        if (one == &other)
            return true;
    return false;
}

Class& ObjectiveC::define(const std::string& name, const std::string& superclass) {
    auto& defined = classes[name];
    defined = std::make_unique<Class>();
    defined->name = name;
    defined->superclass = superclass.empty() ? nullptr : &existingClass(superclass);
    if (defined->superclass)
        defined->make = defined->superclass->make;
    return *defined;
}

Class* ObjectiveC::classNamed(std::string_view name) const {
    const auto found = classes.find(name);
    return found == classes.end() ? nullptr : found->second.get();
}

Class& ObjectiveC::existingClass(std::string_view name) {
    Class* const found = classNamed(name);
    if (!found)
        throw Fault("there is no class " + std::string(name));
    return *found;
}

Address ObjectiveC::selector(const std::string& name) {
    Address& address = selectors[name];
    if (address == 0) {
        address = process.constantText(name);
        selectorNames[address] = name;
    }
    return address;
}

const std::string& ObjectiveC::nameOf(Address selector) const {
    const auto found = selectorNames.find(selector);
    if (found == selectorNames.end())
        throw Fault(inHex(selector) + " is no selector that the runtime knows");
    return found->second;
}

void ObjectiveC::registerLibrary(const MachO& library, Address slide) {
    for (auto& [name, known] : classes) {
        classesByAddress[known->address] = known.get();
        classesByAddress[known->metaclass] = known.get();
    }
    const auto pointers = [&](const char* section) {
        const auto [address, size] = library.section(std::string("__DATA,") + section);
        std::vector<Address> found;
        for (Address at = address; at < address + size; at += 8)
            found.push_back(slide + at);
        return found;
    };
    for (const Address at : pointers("__objc_selrefs"))
        process.memory.write(at, selector(process.memory.text(process.memory.read<Address>(at))));
    for (const Address at : pointers("__objc_classlist"))
        registerClass(process.memory.read<Address>(at), slide);
    for (const Address at : pointers("__objc_catlist")) {
        const auto category = process.memory.read<Address>(at);
        const auto extended = process.memory.read<Address>(category + categoryClass);
        // A class that this system lacks is null. Its category does nothing.
        if (extended == 0)
            continue;
        Class& known = *receiver(extended).aClass;
        readMethods(process.memory.read<Address>(category + categoryInstanceMethods),
                    known.instanceMethods);
        readMethods(process.memory.read<Address>(category + categoryClassMethods),
                    known.classMethods);
    }
}

Class& ObjectiveC::registerClass(Address address, Address slide) {
    const Memory& memory = process.memory;
    if (const auto known = classesByAddress.find(address); known != classesByAddress.end())
        return *known->second;
    const auto data = memory.read<Address>(address + classData) & ~dataFlags;
    const std::string name = memory.text(memory.read<Address>(data + dataName));
    if (classNamed(name))
        throw BadLibrary("the class " + name + " exists already");
    const auto superclass = memory.read<Address>(address + classSuperclass);
    if (!registering.insert(address).second)
        throw BadLibrary("the class " + name + " derives from itself");
    Class& super = process.isInLibrary(superclass) ? registerClass(superclass, slide)
                                                   : *receiver(superclass).aClass;
    Class& added = define(name, super.name);
    added.isOfLibrary = true;
    added.make = nullptr;
    added.address = address;
    added.metaclass = memory.read<Address>(address);
    added.instanceSize = memory.read<std::uint32_t>(data + dataInstanceSize);
    readMethods(memory.read<Address>(data + dataMethods), added.instanceMethods);
    const auto metaData = memory.read<Address>(added.metaclass + classData) & ~dataFlags;
    readMethods(memory.read<Address>(metaData + dataMethods), added.classMethods);
    classesByAddress[added.address] = &added;
    classesByAddress[added.metaclass] = &added;
    return added;
}

void ObjectiveC::readMethods(Address list, std::map<std::string, Method, std::less<>>& methods) {
    if (list == 0)
        return;
    const Memory& memory = process.memory;
    const auto size = memory.read<std::uint32_t>(list);
    const auto count = memory.read<std::uint32_t>(list + 4);
    if (size != methodSize)
        throw BadLibrary("a list of methods has a form that systems before 14 do not know");
    for (std::uint32_t i = 0; i < count; ++i) {
        const Address entry = list + 8 + Address{i} * methodSize;
        Method& method = methods[memory.text(memory.read<Address>(entry))];
        method = {memory.read<Address>(entry + 16), nullptr};
    }
}

const Method* ObjectiveC::find(const Class& start, bool ofClass, std::string_view selector) {
    const auto search = [&](const Class& from, bool amongClassMethods) -> const Method* {
        for (const Class* one = &from; one; one = one->superclass) {
            const auto& methods = amongClassMethods ? one->classMethods : one->instanceMethods;
            if (const auto found = methods.find(selector); found != methods.end())
                return &found->second;
        }
        return nullptr;
    };
    const Method* const found = search(start, ofClass);
    // A class is also an object of the root class.
    return found || !ofClass ? found : search(existingClass("NSObject"), false);
}

Address ObjectiveC::replace(Class& hooked, const std::string& selector, Address implementation) {
    const Method* const found = find(hooked, false, selector);
    if (!found)
        return 0;
    Address previous = found->implementation;
    if (previous == 0)
        previous = process.makeTrap("-[" + hooked.name + ' ' + selector + ']',
                                    [this, native = found->native, selector](NativeCall& call) {
                                        Message message(call.process, call.cpu,
                                                        receiver(call.word(0)), selector);
                                        native(message);
                                    });
    hooked.instanceMethods[selector] = {implementation, nullptr};
    return previous;
}

Receiver ObjectiveC::receiver(Address address) {
    if (const auto found = objects.find(address); found != objects.end())
        return {found->second.get(), const_cast<Class*>(found->second->isa)};
    if (const auto found = classesByAddress.find(address); found != classesByAddress.end())
        return {nullptr, found->second};
    if (Object* const constant = constantString(process, address))
        return {constant, const_cast<Class*>(constant->isa)};
    if (const auto found = released.find(address); found != released.end())
        checkAlive(*found->second);
    throw Fault(inHex(address) + " is no object");
}

Object* ObjectiveC::object(Address address) {
    if (address == 0)
        return nullptr;
    Object* const found = receiver(address).object;
    if (!found)
        throw Fault(inHex(address) + " is a class and no object");
    return found;
}

std::string ObjectiveC::described(const Receiver& to) const {
    return to.object ? "-[" + to.aClass->name : "+[" + to.aClass->name;
}

void ObjectiveC::dispatch(Processor& processor, const Class& start, bool ofClass, Receiver to) {
    const std::string& selector = nameOf(processor.x(1));
    const Method* const method = find(start, ofClass, selector);
    if (!method)
        throw Fault("unrecognized selector " + described(to) + ' ' + selector + ']');
    if (method->implementation != 0)
        return processor.jumpTo(method->implementation);
    Message message(process, processor, to, selector);
    method->native(message);
}

void ObjectiveC::send(Processor& processor) {
    const Address to = processor.x(0);
    if (to == 0) {
        // A message to nil returns zero, in every register that can hold a result.
        processor.returnX(0, 0);
        processor.returnX(1, 0);
        for (unsigned i = 0; i < 4; ++i)
            processor.returnD(i, 0);
        return;
    }
    const Receiver found = receiver(to);
    dispatch(processor, *found.aClass, !found.object, found);
}

void ObjectiveC::sendSuper(Processor& processor) {
    // A structure of the receiver and the class whose superclass is meant.
    const Address super = processor.x(0);
    const auto to = process.memory.read<Address>(super);
    const Receiver found = receiver(to);
    Class* const caller = receiver(process.memory.read<Address>(super + 8)).aClass;
    if (!caller->superclass)
        throw Fault("the class " + caller->name + " has no superclass");
    processor.setX(0, to);
    dispatch(processor, *caller->superclass, !found.object, found);
}

Object& ObjectiveC::add(std::unique_ptr<Object> content, Class& isa, Address place) {
    Object& added = *content;
    added.isa = &isa;
    added.place = place;
    added.address = process.heap.allocate(std::max<std::size_t>(isa.instanceSize, 16), place);
    process.memory.write(added.address, isa.address);
    released.erase(added.address);
    objects[added.address] = std::move(content);
    return added;
}

Object& ObjectiveC::addConstant(std::unique_ptr<Object> content, Class& isa, Address address) {
    content->isa = &isa;
    content->address = address;
    return *(objects[address] = std::move(content));
}

Object& ObjectiveC::allocate(Class& isa, Processor& processor) {
    Object& added =
        add(isa.make ? isa.make() : std::make_unique<Object>(), isa, processor.caller());
    if (const auto construct = isa.instanceMethods.find(".cxx_construct");
        construct != isa.instanceMethods.end())
        processor.call(construct->second.implementation, {added.address});
    return added;
}

void ObjectiveC::checkAlive(const Object& object) const {
    if (object.end != 0)
        throw Fault("an object of class " + object.isa->name + ", made by " +
                    process.describe(object.place) + ", is used after its last release by " +
                    process.describe(object.end));
}

Object* ObjectiveC::retain(Object* object) {
    if (!object || object->isConstant)
        return object;
    checkAlive(*object);
    ++object->references;
    return object;
}

void ObjectiveC::release(Object* object, Processor& processor) {
    if (!object || object->isConstant)
        return;
    checkAlive(*object);
    if (--object->references > 0)
        return;
    const Method& method = *find(*object->isa, false, "dealloc");
    if (method.implementation != 0)
        processor.call(method.implementation, {object->address, selector("dealloc")});
    else
        deallocate(*object, processor);
}

void ObjectiveC::deallocate(Object& object, Processor& processor) {
    for (const Class* one = object.isa; one; one = one->superclass)
        if (const auto destruct = one->instanceMethods.find(".cxx_destruct");
            destruct != one->instanceMethods.end())
            processor.call(destruct->second.implementation, {object.address});
    const auto owned = object.owned();
    object.destroy(process);
    object.end = processor.caller();
    process.heap.free(object.address);
    const auto found = objects.find(object.address);
    released[object.address] = std::move(found->second);
    objects.erase(found);
    for (Object* const one : owned)
        release(one, processor);
}

Object* ObjectiveC::autorelease(Object* object, Processor& processor) {
    if (!object || object->isConstant)
        return object;
    checkAlive(*object);
    auto& open = pools[&processor];
    if (open.empty())
        process.report("an object of class " + object->isa->name +
                       " is autoreleased without a pool, so it is never released: " +
                       process.whereabouts(processor));
    else
        open.back().entries.push_back({object, processor.caller()});
    return object;
}

Address ObjectiveC::pushPool(const Processor& processor) {
    Pool pool;
    pool.token = ++lastToken;
    pools[&processor].push_back(std::move(pool));
    return lastToken;
}

void ObjectiveC::popPool(Address token, Processor& processor) {
    auto& open = pools[&processor];
    if (open.empty() || open.back().token != token)
        throw Fault("an autorelease pool is popped that is not the innermost one of the thread");
    while (!open.back().entries.empty()) {
        // A release can autorelease again.
        const auto entry = open.back().entries.back();
        open.back().entries.pop_back();
        release(entry.object, processor);
    }
    open.pop_back();
}

void ObjectiveC::checkPools(const Processor& processor) {
    if (pools[&processor].empty() && !std::exchange(lackOfPoolIsReported, true))
        process.report("the monitor thread has no autorelease pool: it waits " +
                       process.whereabouts(processor));
    for (Pool& pool : pools[&processor]) {
        for (; pool.checked < pool.entries.size(); ++pool.checked) {
            const auto& [object, place] = pool.entries[pool.checked];
            process.report("an object of class " + object->isa->name +
                           " stays in the monitor thread's autorelease pool while it waits: " +
                           process.describe(place));
        }
    }
}

} // namespace noctara::emulated
