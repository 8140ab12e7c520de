/// A call from the library to the phone, as the platform's calling convention passes it.
#pragma once

#include "phones/emulated/memory.h"
#include "phones/emulated/objective_c.h"
#include "phones/emulated/processor.h"

#include <cstdint>
#include <functional>
#include <string>

namespace noctara::emulated {

class NativeCall {
public:
    NativeCall(Process& ofProcess, Processor& onProcessor) : process(ofProcess), cpu(onProcessor) {}

    // The integer and pointer arguments, numbered from 0.
    std::uint64_t word(unsigned number) const { return cpu.x(firstArgument + number); }
    std::uint32_t number(unsigned index) const { return static_cast<std::uint32_t>(word(index)); }
    /// A BOOL, which its caller has extended to 32 bits. Throws Fault if it has not.
    bool flag(unsigned number) const;
    double real(unsigned number) const { return cpu.d(number); }
    /// A C string. Throws Fault for null.
    std::string text(unsigned number) const;
    /// The name of a selector. Throws Fault if it is none.
    const std::string& selectorArgument(unsigned number) const;
    /// Null for nil.
    Object* object(unsigned number) const;

    /// An argument after the last named one. Each takes eight bytes on the stack.
    std::uint64_t variadic(unsigned number) const;

    /// `size` bytes that the function writes. Throws Fault if the library must not let it.
    std::byte* target(Address address, std::size_t size) const;
    /// Writes a result through a pointer.
    template <typename Value>
    void store(Address address, const Value& value) const {
        std::memcpy(target(address, sizeof value), &value, sizeof value);
    }

    void returns(std::uint64_t value) { cpu.returnX(0, value); }
    /// A result of 32 bits. The upper half of the register is not defined.
    void returnsNumber(std::uint32_t value);
    void returnsFlag(bool value) { returnsNumber(value ? 1 : 0); }
    void returnsReal(double value) { cpu.returnD(0, value); }
    /// Throws Fault for an object that has been released.
    void returnsObject(const Object* object);
    /// A new object, which the current pool releases.
    void returnsAutoreleased(Object* object);

    /// Makes a new object of the phone's for the library, with one reference.
    template <typename Content>
    Content& make(const char* className, Content content = {}) {
        return static_cast<Content&>(
            makeObject(className, std::make_unique<Content>(std::move(content))));
    }

    /// The address in the library that made the call.
    Address place() const { return cpu.caller(); }

    Process& process;
    Processor& cpu;

protected:
    unsigned firstArgument = 0;

private:
    Object& makeObject(const char* className, std::unique_ptr<Object> content);
};

/// A message to an object or a class of the phone's.
class Message : public NativeCall {
public:
    Message(Process& ofProcess, Processor& onProcessor, Receiver itsReceiver,
            std::string_view itsSelector) :
        NativeCall(ofProcess, onProcessor), receiver(itsReceiver), selector(itsSelector) {
        // The receiver and the selector come first.
        firstArgument = 2;
    }

    /// The receiver, which has the content of its class. Throws Fault if it is a class, or an
    /// object of a subclass that the library has made.
    template <typename Content = Object>
    Content& self() const {
        auto* const content = dynamic_cast<Content*>(receiver.object);
        if (!content)
            throw Fault("the emulated phone does not know what " + std::string(selector) +
                        " does to this receiver of class " + receiver.aClass->name);
        return *content;
    }

    void returnsReceiver() {
        returns(receiver.object ? receiver.object->address : receiver.aClass->address);
    }

    const Receiver receiver;
    const std::string_view selector;
};

using NativeFunction = std::function<void(NativeCall&)>;

} // namespace noctara::emulated
