#include "phones/emulated/call.h"

#include "phones/emulated/foundation.h"
#include "phones/emulated/process.h"

namespace noctara::emulated {

bool NativeCall::flag(unsigned number) const {
    // The caller extends a BOOL to 32 bits. The rest of the register is not defined.
    const std::uint32_t value = this->number(number);
    if (value > 1)
        throw Fault("a BOOL argument is " + std::to_string(value));
    return value == 1;
}

std::string NativeCall::text(unsigned number) const {
    return process.memory.text(word(number));
}

const std::string& NativeCall::selectorArgument(unsigned number) const {
    return process.objectiveC.nameOf(word(number));
}

Object* NativeCall::object(unsigned number) const {
    return process.objectiveC.object(word(number));
}

std::uint64_t NativeCall::variadic(unsigned number) const {
    const Address place = cpu.stackPointer() + 8 * Address{number};
    if (cpu.isInFrameRecord(place, 8))
        throw Fault("an argument after the last named one is not on the stack");
    return process.memory.read<std::uint64_t>(place);
}

std::byte* NativeCall::target(Address address, std::size_t size) const {
    if (cpu.isInFrameRecord(address, size))
        throw Fault(std::to_string(size) + " bytes at " + inHex(address) +
                    " are passed to be written, which reach beyond the frame of the function");
    return process.memory.writable(address, size);
}

void NativeCall::returnsNumber(std::uint32_t value) {
    returns(undefinedHalf | value);
}

void NativeCall::returnsObject(const Object* object) {
    if (object)
        process.objectiveC.checkAlive(*object);
    returns(object ? object->address : 0);
}

void NativeCall::returnsAutoreleased(Object* object) {
    returnsObject(process.objectiveC.autorelease(object, cpu));
}

Object& NativeCall::makeObject(const char* className, std::unique_ptr<Object> content) {
    return process.objectiveC.add(std::move(content), process.objectiveC.existingClass(className),
                                  place());
}

} // namespace noctara::emulated
