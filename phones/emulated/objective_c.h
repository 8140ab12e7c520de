/// A small Objective-C runtime: the classes of the library and those of the phone, messages,
/// reference counts and autorelease pools. It keeps the rules that the phone's runtime leaves
/// unchecked: a message to a released object is a Fault.
#pragma once

#include "phones/emulated/heap.h"
#include "phones/emulated/mach_o.h"
#include "phones/emulated/memory.h"
#include "phones/emulated/processor.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace noctara::emulated {

class Process;
class Message;
struct Class;

/// An object. Those of the phone's classes derive from it and keep their content on this machine.
struct Object {
    virtual ~Object() = default;

    Address address = 0;
    const Class* isa = nullptr;
    long references = 1;
    bool isConstant = false; ///< Lives as long as the process.
    Address place = 0;       ///< Where the library asked for it; 0 if the phone made it.
    Address end = 0;         ///< Where it was released for the last time; 0 while it lives.

    /// The objects that it keeps alive.
    virtual std::vector<Object*> owned() const { return {}; }
    /// Releases what it owns.
    virtual void destroy(Process&) {}
};

/// A method of the phone's.
using NativeMethod = std::function<void(Message&)>;

struct Method {
    Address implementation = 0; ///< In the library, or the trap of `native`.
    NativeMethod native;        ///< Empty for a method of the library.
};

struct Class {
    std::string name;
    Class* superclass = nullptr;
    Address address = 0;
    Address metaclass = 0;
    std::size_t instanceSize = 8;
    bool isOfLibrary = false;
    std::map<std::string, Method, std::less<>> instanceMethods;
    std::map<std::string, Method, std::less<>> classMethods;
    /// Makes the content of a new instance; empty for a class without any.
    std::function<std::unique_ptr<Object>()> make;

    bool isKindOf(const Class& other) const;
};

/// The receiver of a message: an object or a class.
struct Receiver {
    Object* object = nullptr;
    Class* aClass = nullptr; ///< The class itself, or that of the object.
};

class ObjectiveC {
public:
    explicit ObjectiveC(Process& itsProcess) : process(itsProcess) {}

    /// Adds a class of the phone's. Its superclass must be there already.
    Class& define(const std::string& name, const std::string& superclass);

    /// Registers the classes and categories of the library and makes its selectors unique.
    void registerLibrary(const MachO& library, Address slide);

    Class* classNamed(std::string_view name) const;
    Class& existingClass(std::string_view name);

    /// The one address of a selector's name.
    Address selector(const std::string& name);
    /// Throws Fault for an address that the runtime has not given to a selector.
    const std::string& nameOf(Address selector) const;

    /// Null if neither the class nor a superclass has the method. `ofClass`: a method of the class
    /// itself.
    const Method* find(const Class& start, bool ofClass, std::string_view selector);

    /// Replaces a method and returns the implementation that it had; 0 if there is none.
    Address replace(Class& hooked, const std::string& selector, Address implementation);

    /// Performs objc_msgSend, whose registers the processor has.
    void send(Processor& processor);
    /// Performs objc_msgSendSuper2.
    void sendSuper(Processor& processor);

    /// Throws Fault if the address is neither an object nor a class.
    Receiver receiver(Address address);
    /// Null for a null address. Throws Fault if it is no object.
    Object* object(Address address);

    /// A new object of the phone's class with one reference. `place` is 0 if the phone keeps it.
    Object& add(std::unique_ptr<Object> content, Class& isa, Address place);
    /// An object that lies in the library itself.
    Object& addConstant(std::unique_ptr<Object> content, Class& isa, Address address);
    /// A new object of any class, as `alloc` makes it.
    Object& allocate(Class& isa, Processor& processor);

    // These throw Fault if the object has been released already.
    Object* retain(Object* object);
    void release(Object* object, Processor& processor);
    void checkAlive(const Object& object) const;
    /// Performs NSObject's dealloc.
    void deallocate(Object& object, Processor& processor);
    Object* autorelease(Object* object, Processor& processor);

    Address pushPool(const Processor& processor);
    void popPool(Address token, Processor& processor);

    /// To be called when the monitor begins to wait. Reports that it has no pool, and objects that
    /// have been added, since it last did, to a pool that stays open: they live as long as the
    /// thread.
    void checkPools(const Processor& processor);

    /// Reports the objects and blocks of the heap that the library has asked for and can no longer
    /// reach.
    void checkLeaks(const std::vector<Processor*>& processors);

private:
    struct Pool {
        struct Entry {
            Object* object;
            Address place;
        };
        std::vector<Entry> entries;
        std::size_t checked = 0; ///< Entries that were there at the last wait.
        Address token = 0;
    };

    Class& registerClass(Address address, Address slide);
    void readMethods(Address list, std::map<std::string, Method, std::less<>>& methods);
    void dispatch(Processor& processor, const Class& start, bool ofClass, Receiver receiver);
    std::string described(const Receiver& receiver) const;

    Process& process;
    std::map<std::string, std::unique_ptr<Class>, std::less<>> classes;
    std::unordered_map<Address, Class*> classesByAddress;
    std::set<Address> registering; ///< Classes of the library whose superclasses are looked up.
    std::unordered_map<std::string, Address> selectors;
    std::unordered_map<Address, std::string> selectorNames;
    std::unordered_map<Address, std::unique_ptr<Object>> objects;
    /// Pools and collections can still refer to them, if they were released too often.
    std::unordered_map<Address, std::unique_ptr<Object>> released;
    std::map<const Processor*, std::vector<Pool>> pools;
    Address lastToken = 0;
    bool lackOfPoolIsReported = false;
};

} // namespace noctara::emulated
