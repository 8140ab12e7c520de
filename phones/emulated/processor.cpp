#include "phones/emulated/processor.h"

#include <algorithm>
#include <bit>
#include <memory>
#include <unicorn/unicorn.h>
#include <utility>

namespace noctara::emulated {

namespace {

constexpr unsigned callerSavedX = 18;
constexpr unsigned callerSavedD = 8;
/// The size of a frame record.
constexpr Address frameRecord = 16;
/// What fills the parts of the stack that no call uses.
constexpr std::byte unusedStack{0xdb};

int registerX(unsigned number) {
    // x29 and x30 have numbers of their own.
    if (number == 29)
        return UC_ARM64_REG_X29;
    if (number == 30)
        return UC_ARM64_REG_X30;
    return UC_ARM64_REG_X0 + static_cast<int>(number);
}

std::uint32_t protectionOf(Memory::Access access) {
    switch (access) {
    case Memory::Access::read:
        return UC_PROT_READ;
    case Memory::Access::readAndWrite:
        return UC_PROT_READ | UC_PROT_WRITE;
    default:
        return UC_PROT_READ | UC_PROT_EXEC;
    }
}

} // namespace

/// The functions that the engine calls. No exception may leave them.
struct Processor::Hooks {
    template <typename Work>
    static void guarded(Processor& processor, Work work) {
        if (processor.thrown)
            return;
        try {
            work();
        } catch (...) {
            processor.thrown = std::current_exception();
            uc_emu_stop(processor.engine);
        }
    }

    static void trap(uc_engine*, std::uint64_t address, std::uint32_t, void* processor) {
        auto& self = *static_cast<Processor*>(processor);
        guarded(self, [&] {
            const auto outerResults = std::exchange(self.results, 0);
            self.jumps = false;
            self.atTrap(self, (address - firstTrap) / trapSize);
            if (!std::exchange(self.jumps, false))
                self.leaveUndefined(self.results);
            self.results = outerResults;
        });
    }

    static void heapAccess(uc_engine*, uc_mem_type type, std::uint64_t address, int size,
                           std::int64_t, void* processor) {
        auto& self = *static_cast<Processor*>(processor);
        const auto length = static_cast<std::size_t>(size);
        if (self.heap.owns(address, length))
            return;
        guarded(self, [&] {
            throw Fault((type == UC_MEM_READ ? "a read of " : "a write of ") +
                        std::to_string(length) + " bytes at " + inHex(address) +
                        ", which the library does not own");
        });
    }

    static bool invalidAccess(uc_engine*, uc_mem_type type, std::uint64_t address, int size,
                              std::int64_t, void* processor) {
        auto& self = *static_cast<Processor*>(processor);
        guarded(self, [&] {
            const std::string bytes = std::to_string(size) + " bytes at " + inHex(address);
            switch (type) {
            case UC_MEM_WRITE_PROT:
                throw Fault("a write of " + bytes + ", which are read-only");
            case UC_MEM_WRITE_UNMAPPED:
                throw Fault("a write of " + bytes + ", which are not mapped");
            case UC_MEM_FETCH_PROT:
            case UC_MEM_FETCH_UNMAPPED:
                throw Fault("a jump to " + inHex(address) + ", where there is no code");
            default:
                throw Fault("a read of " + bytes + ", which are not mapped");
            }
        });
        return false;
    }

    static void interrupt(uc_engine*, std::uint32_t number, void* processor) {
        guarded(*static_cast<Processor*>(processor),
                [&] { throw Fault("exception " + std::to_string(number) + " of the processor"); });
    }

    static void instruction(uc_engine*, std::uint64_t, std::uint32_t, void* processor) {
        ++static_cast<Processor*>(processor)->instructions;
    }
};

Processor::Processor(const Memory& processMemory, const Heap& processHeap, Stack itsStack,
                     std::function<void(Processor&, std::size_t)> trap) :
    stack(itsStack), memory(processMemory), heap(processHeap), atTrap(std::move(trap)) {
    check(uc_open(UC_ARCH_ARM64, UC_MODE_ARM, &engine), "start");
    std::memset(memory.at(stack.start, stack.size), static_cast<int>(unusedStack), stack.size);
    const std::uint64_t floatingPoint = 3 << 20;
    check(uc_reg_write(engine, UC_ARM64_REG_CPACR_EL1, &floatingPoint), "switch on arithmetic");
    for (const auto& region : memory.regions())
        check(uc_mem_map_ptr(engine, region.start, region.size, protectionOf(region.access),
                             region.bytes),
              "map memory");
    const auto add = [this](int type, auto* function, Address from, Address to) {
        uc_hook hook;
        check(uc_hook_add(engine, &hook, type, reinterpret_cast<void*>(function), this, from, to),
              "set a hook");
    };
    add(UC_HOOK_CODE, Hooks::trap, firstTrap, firstTrap + trapSize * mostTraps - 1);
    add(UC_HOOK_MEM_READ | UC_HOOK_MEM_WRITE, Hooks::heapAccess, Heap::start, Heap::end - 1);
    add(UC_HOOK_MEM_INVALID, Hooks::invalidAccess, 1, 0);
    add(UC_HOOK_INTR, Hooks::interrupt, 1, 0);
}

Processor::~Processor() {
    if (engine)
        uc_close(engine);
}

void Processor::countInstructions() {
    uc_hook hook;
    check(uc_hook_add(engine, &hook, UC_HOOK_CODE, reinterpret_cast<void*>(Hooks::instruction),
                      this, 1, 0),
          "set a hook");
}

std::uint64_t Processor::call(Address function, const std::vector<std::uint64_t>& arguments) {
    std::unique_ptr<uc_context, uc_err (*)(uc_context*)> outer(nullptr, uc_context_free);
    const bool isOutermost = depth++ == 0;
    if (isOutermost) {
        const Address top = stack.start + stack.size - 64;
        check(uc_reg_write(engine, UC_ARM64_REG_SP, &top), "set a register");
        setX(29, 0);
    } else {
        uc_context* saved = nullptr;
        check(uc_context_alloc(engine, &saved), "save the registers");
        outer.reset(saved);
        check(uc_context_save(engine, saved), "save the registers");
    }
    leaveUndefined(0);
    for (unsigned number = 0; number < arguments.size(); ++number)
        setX(number, arguments[number]);
    setX(30, returnAddress);
    const auto outerResults = results;
    const auto error = uc_emu_start(engine, function, returnAddress, 0, 0);
    const std::uint64_t result = x(0);
    results = outerResults;
    --depth;
    if (thrown)
        std::rethrow_exception(std::exchange(thrown, nullptr));
    if (error != UC_ERR_OK)
        throw Fault(std::string("the processor stops: ") + uc_strerror(error));
    if (outer)
        check(uc_context_restore(engine, outer.get()), "restore the registers");
    if (isOutermost)
        clearStack();
    return result;
}

void Processor::leaveUndefined(std::uint32_t kept) {
    int numbers[callerSavedX + callerSavedD];
    void* values[callerSavedX + callerSavedD];
    static std::uint64_t undefined = undefinedWord;
    int count = 0;
    for (unsigned i = 0; i < callerSavedX + callerSavedD; ++i) {
        if (kept >> i & 1)
            continue;
        numbers[count] =
            i < callerSavedX ? registerX(i) : UC_ARM64_REG_D0 + static_cast<int>(i - callerSavedX);
        values[count++] = &undefined;
    }
    check(uc_reg_write_batch(engine, numbers, values, count), "set the registers");
}

void Processor::clearStack() const {
    // Calls use the stack downwards from its top, and a page that no call has used ends the search.
    constexpr std::size_t page = 0x1000;
    for (Address end = stack.start + stack.size; end > stack.start; end -= page) {
        std::byte* const bytes = memory.at(end - page, page);
        if (std::all_of(bytes, bytes + page, [](std::byte one) { return one == unusedStack; }))
            return;
        std::memset(bytes, static_cast<int>(unusedStack), page);
    }
}

std::uint64_t Processor::x(unsigned number) const {
    std::uint64_t value = 0;
    uc_reg_read(engine, registerX(number), &value);
    return value;
}

void Processor::setX(unsigned number, std::uint64_t value) {
    uc_reg_write(engine, registerX(number), &value);
}

double Processor::d(unsigned number) const {
    std::uint64_t bits = 0;
    uc_reg_read(engine, UC_ARM64_REG_D0 + static_cast<int>(number), &bits);
    return std::bit_cast<double>(bits);
}

void Processor::setD(unsigned number, double value) {
    const auto bits = std::bit_cast<std::uint64_t>(value);
    uc_reg_write(engine, UC_ARM64_REG_D0 + static_cast<int>(number), &bits);
}

void Processor::returnX(unsigned number, std::uint64_t value) {
    setX(number, value);
    results |= 1U << number;
}

void Processor::returnD(unsigned number, double value) {
    setD(number, value);
    results |= 1U << (callerSavedX + number);
}

Address Processor::stackPointer() const {
    Address value = 0;
    uc_reg_read(engine, UC_ARM64_REG_SP, &value);
    return value;
}

Address Processor::instruction() const {
    Address value = 0;
    uc_reg_read(engine, UC_ARM64_REG_PC, &value);
    return value;
}

void Processor::jumpTo(Address function) {
    uc_reg_write(engine, UC_ARM64_REG_PC, &function);
    jumps = true;
}

std::vector<Address> Processor::frames() const {
    std::vector<Address> found;
    Address frame = x(29);
    while (frame >= stack.start && frame <= stack.start + stack.size - frameRecord &&
           found.size() < 32) {
        found.push_back(frame);
        const auto outer = memory.read<Address>(frame);
        if (outer <= frame)
            break;
        frame = outer;
    }
    return found;
}

std::vector<Address> Processor::callers() const {
    std::vector<Address> found;
    for (const Address frame : frames())
        found.push_back(memory.read<Address>(frame + 8));
    return found;
}

bool Processor::isInFrameRecord(Address address, std::size_t size) const {
    if (address < stack.start || address >= stack.start + stack.size)
        return false;
    const auto all = frames();
    return std::any_of(all.begin(), all.end(), [&](Address frame) {
        return address < frame + frameRecord && address + size > frame;
    });
}

Processor::Stack Processor::usedStack() const {
    const Address used = stackPointer();
    const Address top = stack.start + stack.size;
    return used >= stack.start && used < top ? Stack{used, top - used} : Stack{top, 0};
}

void Processor::check(int error, const char* what) const {
    if (error != UC_ERR_OK)
        throw std::runtime_error(std::string("the emulated processor cannot ") + what + ": " +
                                 uc_strerror(static_cast<uc_err>(error)));
}

} // namespace noctara::emulated
