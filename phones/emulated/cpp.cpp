/// libc++: the functions of the C++ standard library that are not templates of its headers.
#include "phones/emulated/process.h"
#include "phones/emulated/system_libraries.h"

#include <algorithm>

namespace noctara::emulated {

namespace {

const std::string libCpp = "/usr/lib/libc++.1.dylib";

/// A std::string of the library. On arm64 the last of its 24 bytes is the length of a short string,
/// which the string itself holds. With the top bit set the fields are address, length and capacity.
class StringInProcess {
public:
    StringInProcess(NativeCall& itsCall, Address itsAddress) :
        call(itsCall), memory(itsCall.process.memory), address(itsAddress) {}

    std::string get() const {
        if (isLong())
            return memory.bytes(memory.read<Address>(address),
                                memory.read<std::uint64_t>(address + 8));
        return memory.bytes(address, memory.read<std::uint8_t>(address + 23));
    }

    /// Constructs the string.
    void construct(const std::string& text) {
        memory.write(address + 16, std::uint64_t{0});
        set(text);
    }

    /// Replaces the text. The string must exist.
    void set(const std::string& text) {
        const std::size_t capacity =
            isLong() ? (memory.read<std::uint64_t>(address + 16) & ~longBit) - 1 : mostShort;
        if (text.size() > capacity) {
            const Address old = isLong() ? memory.read<Address>(address) : 0;
            const std::size_t size = (std::max(text.size(), 2 * capacity) + 16) & ~std::size_t{15};
            memory.write(address, call.process.heap.allocate(size, call.place()));
            memory.write(address + 16, size | longBit);
            call.process.heap.free(old);
        }
        if (isLong())
            memory.write(address + 8, std::uint64_t{text.size()});
        else
            memory.write(address + 23, static_cast<std::uint8_t>(text.size()));
        const Address bytes = isLong() ? memory.read<Address>(address) : address;
        std::memcpy(memory.at(bytes, text.size() + 1), text.c_str(), text.size());
        memory.write(bytes + text.size(), '\0');
    }

private:
    static constexpr std::uint64_t longBit = std::uint64_t{1} << 63;
    static constexpr std::size_t mostShort = 22;

    bool isLong() const { return memory.read<std::uint64_t>(address + 16) & longBit; }

    NativeCall& call;
    const Memory& memory;
    const Address address;
};

/// A constructor or destructor that does nothing else.
void returnObject(NativeCall& c) {
    c.returns(c.word(0));
}

/// The prefix of the members of std::string.
const std::string stringMember = "__ZNSt3__112basic_stringIcNS_11char_traitsIcEENS_9allocatorIcEEE";
const std::string stringConstMember =
    "__ZNKSt3__112basic_stringIcNS_11char_traitsIcEENS_9allocatorIcEEE";

void addStrings(Process& process) {
    const auto add = [&](const std::string& symbol, NativeFunction function) {
        process.addFunction(libCpp, symbol, std::move(function));
    };
    const auto change = [](NativeCall& c, const std::string& text) {
        StringInProcess(c, c.word(0)).set(text);
        c.returns(c.word(0));
    };
    // A constructor returns the object, and so does a destructor.
    const auto construct = [](NativeCall& c, const std::string& text) {
        StringInProcess(c, c.word(0)).construct(text);
        c.returns(c.word(0));
    };
    const auto textOfArgument = [](NativeCall& c, unsigned number) {
        return StringInProcess(c, c.word(number)).get();
    };
    add(stringMember + "6appendEPKc",
        [=](NativeCall& c) { change(c, textOfArgument(c, 0) + c.text(1)); });
    add(stringMember + "6appendEPKcm", [=](NativeCall& c) {
        change(c, textOfArgument(c, 0) + c.process.memory.bytes(c.word(1), c.word(2)));
    });
    add(stringMember + "6insertEmPKc",
        [=](NativeCall& c) { change(c, textOfArgument(c, 0).insert(c.word(1), c.text(2))); });
    add(stringMember + "6insertEmPKcm", [=](NativeCall& c) {
        change(c, textOfArgument(c, 0).insert(c.word(1),
                                              c.process.memory.bytes(c.word(2), c.word(3))));
    });
    add(stringMember + "9push_backEc",
        [=](NativeCall& c) { change(c, textOfArgument(c, 0) + static_cast<char>(c.word(1))); });
    add(stringMember + "C1ERKS5_", [=](NativeCall& c) { construct(c, textOfArgument(c, 1)); });
    add(stringMember + "C1ERKS5_mmRKS4_",
        [=](NativeCall& c) { construct(c, textOfArgument(c, 1).substr(c.word(2), c.word(3))); });
    add(stringConstMember + "7compareEmmPKcm", [=](NativeCall& c) {
        c.returnsNumber(static_cast<std::uint32_t>(textOfArgument(c, 0).compare(
            c.word(1), c.word(2), c.process.memory.bytes(c.word(3), c.word(4)))));
    });
    // A result that needs memory is made at the address in x8.
    add("__ZNSt3__19to_stringEx", [](NativeCall& c) {
        StringInProcess(c, c.cpu.x(8))
            .construct(std::to_string(static_cast<std::int64_t>(c.word(0))));
    });
}

void addMemory(Process& process) {
    const NativeFunction allocate = [](NativeCall& c) {
        // The content of new memory is not defined.
        constexpr int undefined = 0xaa;
        const std::size_t size = c.word(0);
        const Address made = c.process.heap.allocate(size, c.place());
        std::memset(c.process.memory.at(made, size), undefined, size);
        c.returns(made);
    };
    const NativeFunction free = [](NativeCall& c) { c.process.heap.free(c.word(0)); };
    process.addFunction(libCpp, "__Znwm", allocate);
    process.addFunction(libCpp, "__ZnwmRKSt9nothrow_t", allocate);
    process.addFunction(libCpp, "__ZdlPv", free);
    process.addFunction(libCpp, "__ZdlPvRKSt9nothrow_t", free);
    process.addData(libCpp, "__ZSt7nothrow", 16);
}

void addSharedPointers(Process& process) {
    // The owners, each one less than their number, follow the table of virtual functions.
    constexpr Address weakOwners = 16;
    constexpr Address onZeroSharedWeak = 4 * 8;
    process.addFunction(
        libCpp, "__ZNSt3__119__shared_weak_count14__release_weakEv", [](NativeCall& c) {
            const Memory& memory = c.process.memory;
            const Address count = c.word(0);
            const auto owners = memory.read<std::int64_t>(count + weakOwners);
            memory.write(count + weakOwners, owners - 1);
            if (owners == 0)
                c.cpu.call(memory.read<Address>(memory.read<Address>(count) + onZeroSharedWeak),
                           {count});
        });
    process.addFunction(libCpp, "__ZNSt3__119__shared_weak_countD2Ev", returnObject);
    process.addFunction(libCpp, "__ZNKSt3__119__shared_weak_count13__get_deleterERKSt9type_info",
                        [](NativeCall& c) { c.returns(0); });
}

void addMutexes(Process& process) {
    const std::string member = "__ZNSt3__115recursive_mutex";
    // The count of locks, in the first eight bytes; then the thread that holds it.
    process.addFunction(libCpp, member + "C1Ev", [](NativeCall& c) {
        c.process.memory.write(c.word(0), std::uint64_t{0});
        c.process.memory.write(c.word(0) + 8, std::uint64_t{0});
        c.returns(c.word(0));
    });
    process.addFunction(libCpp, member + "D1Ev", returnObject);
    process.addFunction(libCpp, member + "4lockEv", [](NativeCall& c) {
        const Memory& memory = c.process.memory;
        const auto locks = memory.read<std::uint64_t>(c.word(0));
        const std::uint64_t thread = c.cpu.stack.start;
        if (locks > 0 && memory.read<std::uint64_t>(c.word(0) + 8) != thread)
            throw Fault("both threads wait for each other: one holds a lock that the other needs");
        memory.write(c.word(0), locks + 1);
        memory.write(c.word(0) + 8, thread);
    });
    process.addFunction(libCpp, member + "6unlockEv", [](NativeCall& c) {
        const auto locks = c.process.memory.read<std::uint64_t>(c.word(0));
        if (locks == 0)
            throw Fault("a lock is released that is not held");
        c.process.memory.write(c.word(0), locks - 1);
    });
}

void addStatics(Process& process) {
    process.addFunction(libCpp, "___cxa_guard_acquire", [](NativeCall& c) {
        c.returnsNumber(c.process.memory.read<std::uint8_t>(c.word(0)) == 0);
    });
    process.addFunction(libCpp, "___cxa_guard_release",
                        [](NativeCall& c) { c.process.memory.write(c.word(0), std::uint8_t{1}); });
    process.addFunction(libCpp, "___cxa_guard_abort", [](NativeCall&) {});
}

/// The type information of an object's class is in front of its virtual functions. The one base of
/// a class follows its name.
void addTypes(Process& process) {
    const Address oneBase =
        process.addData(libCpp, "__ZTVN10__cxxabiv120__si_class_type_infoE", 64);
    process.addData(libCpp, "__ZTVN10__cxxabiv117__class_type_infoE", 64);
    process.addData(libCpp, "__ZTVN10__cxxabiv121__vmi_class_type_infoE", 64);
    constexpr Address toFirstFunction = 16;
    process.addFunction(libCpp, "___dynamic_cast", [=](NativeCall& c) {
        const Memory& memory = c.process.memory;
        const Address object = c.word(0);
        const Address wanted = c.word(2);
        Address type = memory.read<Address>(memory.read<Address>(object) - 8);
        while (type != wanted && memory.read<Address>(type) == oneBase + toFirstFunction)
            type = memory.read<Address>(type + 16);
        c.returns(type == wanted ? object : 0);
    });
    for (const char* const symbol :
         {"__ZTISt11logic_error", "__ZTISt12length_error", "__ZTISt20bad_array_new_length",
          "__ZTISt9exception", "__ZTINSt3__119__shared_weak_countE", "__ZTVSt12length_error"})
        process.addData(libCpp, symbol, 64);
}

/// Exceptions are reported and not carried through: the library throws only where it cannot go on.
void addExceptions(Process& process) {
    process.addFunction(libCpp, "___cxa_throw",
                        [](NativeCall&) { throw Fault("the library throws an exception"); });
    process.addFunction(libCpp, "__ZSt9terminatev",
                        [](NativeCall&) { throw Fault("the library terminates the process"); });
    process.addFunction(libCpp, "___cxa_allocate_exception", [](NativeCall& c) {
        c.returns(c.process.heap.allocate(c.word(0), c.place()));
    });
    for (const char* const symbol :
         {"___cxa_begin_catch", "___cxa_free_exception", "___gxx_personality_v0"})
        process.addFunction(libCpp, symbol, [](NativeCall&) {
            throw Fault("an exception reaches a handler, though none is carried through");
        });
    for (const char* const symbol :
         {"__ZNSt11logic_errorC1EPKc", "__ZNSt11logic_errorC2EPKc", "__ZNSt11logic_errorD1Ev",
          "__ZNSt12length_errorD1Ev", "__ZNSt20bad_array_new_lengthC1Ev",
          "__ZNSt20bad_array_new_lengthD1Ev", "__ZNSt9exceptionD2Ev", "__ZNKSt9exception4whatEv"})
        process.addFunction(libCpp, symbol, returnObject);
}

} // namespace

void addCpp(Process& process) {
    addStrings(process);
    addMemory(process);
    addSharedPointers(process);
    addMutexes(process);
    addStatics(process);
    addTypes(process);
    addExceptions(process);
}

} // namespace noctara::emulated
