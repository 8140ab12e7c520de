/// libSystem: the C library, the dynamic loader, notifications and the main dispatch queue.
#include "phones/emulated/emulated_phone.h"
#include "phones/emulated/formatting.h"
#include "phones/emulated/process.h"
#include "phones/emulated/system_libraries.h"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <map>

namespace noctara::emulated {

namespace {

const std::string libSystem = "/usr/lib/libSystem.B.dylib";

// A block, as the compiler lays it out.
constexpr Address blockFlags = 8;
constexpr Address blockInvoke = 16;
constexpr Address blockDescriptor = 24;
constexpr Address descriptorSize = 8;
constexpr Address descriptorCopy = 16;
constexpr std::uint32_t blockHasCopy = 1 << 25;

/// Moves a block from the stack to the heap.
Address copyBlock(NativeCall& call, Address block) {
    const Memory& memory = call.process.memory;
    const auto kind = memory.read<Address>(block);
    if (kind == call.process.addressOf("__NSConcreteGlobalBlock"))
        return block;
    if (kind != call.process.addressOf("__NSConcreteStackBlock"))
        throw Fault(inHex(block) + " is no block");
    const auto descriptor = memory.read<Address>(block + blockDescriptor);
    const auto size = memory.read<std::uint64_t>(descriptor + descriptorSize);
    // The phone keeps it as long as the process, so it is no leak of the library's.
    const Address copy = call.process.heap.allocate(size, 0);
    std::memcpy(memory.at(copy, size), memory.at(block, size), size);
    if (memory.read<std::uint32_t>(block + blockFlags) & blockHasCopy)
        call.cpu.call(memory.read<Address>(descriptor + descriptorCopy), {copy, block});
    return copy;
}

/// Writes a string with its null, cut to `size`. Returns what snprintf returns.
void store(NativeCall& call, Address buffer, std::uint64_t size, const std::string& text) {
    if (size > 0) {
        const std::size_t length = std::min<std::size_t>(text.size(), size - 1);
        // It may write the whole buffer, whatever the length of the text.
        std::byte* const bytes = call.target(buffer, size);
        std::memcpy(bytes, text.data(), length);
        bytes[length] = {};
    }
    call.returnsNumber(static_cast<std::uint32_t>(text.size()));
}

void addMemoryFunctions(Process& process) {
    const auto add = [&](const char* symbol, NativeFunction function) {
        process.addFunction(libSystem, symbol, std::move(function));
    };
    const NativeFunction copy = [](NativeCall& c) {
        if (const std::uint64_t size = c.word(2))
            std::memmove(c.target(c.word(0), size), c.process.memory.at(c.word(1), size), size);
        c.returns(c.word(0));
    };
    add("_memcpy", copy);
    add("_memmove", copy);
    add("_memset", [](NativeCall& c) {
        if (const std::uint64_t size = c.word(2))
            std::memset(c.target(c.word(0), size), static_cast<int>(c.number(1)), size);
        c.returns(c.word(0));
    });
    add("_bzero", [](NativeCall& c) {
        if (const std::uint64_t size = c.word(1))
            std::memset(c.target(c.word(0), size), 0, size);
    });
    add("_memcmp", [](NativeCall& c) {
        const std::uint64_t size = c.word(2);
        const Memory& memory = c.process.memory;
        const int order =
            size == 0 ? 0
                      : std::memcmp(memory.at(c.word(0), size), memory.at(c.word(1), size), size);
        c.returnsNumber(static_cast<std::uint32_t>(order));
    });
    add("_memchr", [](NativeCall& c) {
        const std::uint64_t size = c.word(2);
        if (size == 0)
            return c.returns(0);
        const std::byte* const start = c.process.memory.at(c.word(0), size);
        const void* const found = std::memchr(start, static_cast<int>(c.number(1)), size);
        c.returns(found ? c.word(0) + static_cast<std::uint64_t>(
                                          static_cast<const std::byte*>(found) - start)
                        : 0);
    });
    add("_strlen", [](NativeCall& c) { c.returns(c.text(0).size()); });
    add("_strcmp", [](NativeCall& c) {
        c.returnsNumber(static_cast<std::uint32_t>(c.text(0).compare(c.text(1))));
    });
    add("___stack_chk_fail",
        [](NativeCall&) { throw Fault("a function has written over the end of its stack frame"); });
    const Address guard = process.addData(libSystem, "___stack_chk_guard", 8);
    process.memory.write(guard, std::uint64_t{0x00bad57ac4'6a7d00});
}

void addTextFunctions(Process& process) {
    const auto add = [&](const char* symbol, NativeFunction function) {
        process.addFunction(libSystem, symbol, std::move(function));
    };
    add("_snprintf", [](NativeCall& c) {
        unsigned next = 0;
        store(c, c.word(0), c.word(1),
              formatted(c.process, c.text(2), [&] { return c.variadic(next++); }));
    });
    add("_vsnprintf", [](NativeCall& c) {
        // A va_list is a pointer to the arguments.
        Address next = c.word(3);
        store(c, c.word(0), c.word(1), formatted(c.process, c.text(2), [&] {
                  return c.process.memory.read<std::uint64_t>(std::exchange(next, next + 8));
              }));
    });
    add("_printf", [](NativeCall& c) {
        unsigned next = 0;
        const std::string text =
            formatted(c.process, c.text(0), [&] { return c.variadic(next++); });
        std::cout << text;
        c.returnsNumber(static_cast<std::uint32_t>(text.size()));
    });
    add("_acos", [](NativeCall& c) { c.returnsReal(std::acos(c.real(0))); });
}

void addClock(Process& process) {
    process.addFunction(libSystem, "_time", [](NativeCall& c) {
        const auto seconds = static_cast<std::uint64_t>(c.process.phone.time());
        if (c.word(0) != 0)
            c.store(c.word(0), seconds);
        c.returns(seconds);
    });
    process.addFunction(libSystem, "_sleep", [](NativeCall& c) {
        if (&c.cpu == c.process.main.get())
            throw Fault("the main thread sleeps");
        c.process.phone.sleep(c.number(0));
        c.returnsNumber(0);
    });
}

void addDevice(Process& process) {
    process.addFunction(libSystem, "_uname", [](NativeCall& c) {
        // Five texts of 256 bytes: the system, the node, the release, the version, the machine.
        constexpr std::size_t field = 256;
        std::byte* const names = c.target(c.word(0), 5 * field);
        std::memset(names, 0, 5 * field);
        const std::string machine = c.process.phone.device.machine().substr(0, field - 1);
        std::memcpy(names + 4 * field, machine.data(), machine.size());
        c.returnsNumber(0);
    });
    process.addFunction(libSystem, "_dlopen", [](NativeCall& c) {
        const std::string name = c.text(0);
        const LibraryRef opened = c.process.phone.device.open(name.c_str());
        c.returns(c.process.lacks(name) ? 0 : reinterpret_cast<Address>(opened));
    });
    process.addFunction(libSystem, "_dlsym", [](NativeCall& c) {
        const std::string name = c.text(1);
        const FunctionRef found =
            c.process.phone.device.find(reinterpret_cast<LibraryRef>(c.word(0)), name.c_str());
        c.returns(found && !c.process.lacks('_' + name) ? c.process.addressOf('_' + name) : 0);
    });
    process.addFunction(libSystem, "_dlclose", [](NativeCall& c) {
        c.process.phone.device.close(reinterpret_cast<LibraryRef>(c.word(0)));
        c.returnsNumber(0);
    });
}

void addNotifications(Process& process) {
    process.addData(libSystem, "__dispatch_main_q", 64);
    process.addData(libSystem, "__NSConcreteStackBlock", 64);
    process.addData(libSystem, "__NSConcreteGlobalBlock", 64);
    process.addFunction(libSystem, "_notify_post", [](NativeCall& c) {
        c.process.phone.process.post(c.text(0).c_str());
        c.returnsNumber(0);
    });
    process.addFunction(libSystem, "_notify_register_dispatch", [](NativeCall& c) {
        if (c.word(2) != c.process.addressOf("__dispatch_main_q"))
            throw Fault("a notification is not delivered on the main queue");
        Process& owner = c.process;
        const Address block = copyBlock(c, c.word(3));
        const auto token = std::make_shared<std::uint32_t>();
        *token = static_cast<std::uint32_t>(
            owner.phone.process.registerOnMainQueue(c.text(0).c_str(), [&owner, block, token] {
                owner.callOnMain(owner.memory.read<Address>(block + blockInvoke),
                                 {block, undefinedHalf | *token});
            }));
        c.store(c.word(1), *token);
        c.returnsNumber(0);
    });
}

} // namespace

void addSystem(Process& process) {
    addMemoryFunctions(process);
    addTextFunctions(process);
    addClock(process);
    addDevice(process);
    addNotifications(process);
    process.addFunction(libSystem, "dyld_stub_binder", [](NativeCall&) {
        throw Fault("a function is bound at its first call, but all are bound at the start");
    });
    process.addFunction(libSystem, "__Unwind_Resume",
                        [](NativeCall&) { throw Fault("an exception unwinds the stack"); });
}

void addSystemLibraries(Process& process) {
    addObjectiveC(process);
    addFoundation(process);
    addSystem(process);
    addCpp(process);
    addFrameworks(process);
    addSpringBoard(process);
}

} // namespace noctara::emulated
