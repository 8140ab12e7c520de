/// An emulated arm64 processor. It runs the library's code for one thread, on a stack of its own.
#pragma once

#include "phones/emulated/heap.h"
#include "phones/emulated/memory.h"

#include <array>
#include <cstdint>
#include <exception>
#include <functional>
#include <string>
#include <vector>

struct uc_struct;

namespace noctara::emulated {

/// The addresses that stand for functions outside the library. A jump to one calls `atTrap` of the
/// processor.
inline constexpr Address firstTrap = 0x2'0000'0000;
inline constexpr std::size_t trapSize = 16;
inline constexpr std::size_t mostTraps = 4096;
/// The return address of a call from outside the library.
inline constexpr Address returnAddress = firstTrap - 0x10000;

/// The upper half of a register that holds 32 bits is not defined. A library that reads it
/// gets this value.
inline constexpr std::uint64_t undefinedHalf = 0xdeadbeef'00000000;
/// The content of a register that a call leaves undefined.
inline constexpr std::uint64_t undefinedWord = 0xdeadbeef'deadbeef;

class Processor {
public:
    struct Stack {
        Address start;
        std::size_t size;
    };

    /// All of the memory must be mapped already.
    Processor(const Memory& memory, const Heap& heap, Stack stack,
              std::function<void(Processor&, std::size_t trap)> atTrap);
    ~Processor();
    Processor(const Processor&) = delete;
    Processor& operator=(const Processor&) = delete;

    /// Calls a function with integer arguments, as its caller on the phone would, and returns x0.
    /// Calls may be nested. Throws what a function behind a trap has thrown, and Fault.
    std::uint64_t call(Address function, const std::vector<std::uint64_t>& arguments = {});

    std::uint64_t x(unsigned number) const;
    void setX(unsigned number, std::uint64_t value);
    double d(unsigned number) const;

    /// In a trap: the results. All other registers that a call may change are undefined after it.
    void returnX(unsigned number, std::uint64_t value);
    void returnD(unsigned number, double value);

    Address stackPointer() const;
    Address instruction() const;

    /// In a trap: goes on at `function` instead of returning, with all registers as they are.
    void jumpTo(Address function);

    /// In a trap: the instruction after the call.
    Address caller() const { return x(30); }

    /// The return addresses on the stack, the innermost first, without the caller of the trap.
    std::vector<Address> callers() const;

    /// In a trap: whether one of the bytes belongs to a frame record on the stack.
    bool isInFrameRecord(Address address, std::size_t size) const;

    /// The part of the stack that is in use.
    Stack usedStack() const;

    /// Counts the instructions of the library. Call it before the first call.
    void countInstructions();
    std::uint64_t instructions = 0;

    const Stack stack;

private:
    struct Hooks;

    /// The frame records on the stack, the innermost first. Each holds the address of the next one
    /// and a return address.
    std::vector<Address> frames() const;
    void setD(unsigned number, double value);
    /// Makes the registers undefined that a call may change, up to x17 and d7. `kept` has a bit for
    /// each of x0 to x17, and then for each of d0 to d7.
    void leaveUndefined(std::uint32_t kept);
    /// Overwrites what earlier calls have left on the stack.
    void clearStack() const;
    void check(int error, const char* what) const;

    const Memory& memory;
    const Heap& heap;
    uc_struct* engine = nullptr;
    std::function<void(Processor&, std::size_t)> atTrap;
    std::exception_ptr thrown; ///< It must not pass through the engine's frames.
    unsigned depth = 0;        ///< Of nested calls.
    std::uint32_t results = 0; ///< Of the current trap, as for leaveUndefined.
    bool jumps = false;        ///< The current trap goes on at another function.
};

} // namespace noctara::emulated
