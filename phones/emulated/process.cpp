#include "phones/emulated/process.h"

#include "input/file_reading.h"
#include "phones/emulated/foundation.h"
#include "phones/emulated/system_libraries.h"

#include <algorithm>
#include <cstdlib>
#include <cxxabi.h>

namespace noctara::emulated {

namespace {

constexpr Address dataStart = 0x1'0000'0000;
constexpr std::size_t dataSize = 0x100000;
constexpr Address mainStack = 0x4'0000'0000;
constexpr Address monitorStack = 0x5'0000'0000;
/// What iOS gives the main thread, and any other.
constexpr std::size_t mainStackSize = 0x100000;
constexpr std::size_t monitorStackSize = 0x80000;
constexpr std::uint32_t returnInstruction = 0xd65f03c0;
const std::string classPrefix = "_OBJC_CLASS_$_";
const std::string metaclassPrefix = "_OBJC_METACLASS_$_";
/// Which library of the phone also exports what another one has.
const std::multimap<std::string, std::string> exportedAgain{
    {"/System/Library/Frameworks/CoreFoundation.framework/CoreFoundation",
     "/usr/lib/libobjc.A.dylib"},
    {"/System/Library/Frameworks/Foundation.framework/Foundation",
     "/System/Library/Frameworks/CoreFoundation.framework/CoreFoundation"},
    {"/System/Library/Frameworks/UIKit.framework/UIKit",
     "/System/Library/Frameworks/Foundation.framework/Foundation"},
};

constexpr std::size_t pagesOf(std::size_t size) {
    return (size + 0x3fff) & ~std::size_t{0x3fff};
}

std::string contentOf(const std::filesystem::path& file) {
    try {
        return readFile(file, 64);
    } catch (const UnreadableFile& error) {
        throw BadLibrary(error.what());
    }
}

std::string demangled(const std::string& symbol) {
    if (!symbol.starts_with("__Z"))
        return symbol.starts_with('_') ? symbol.substr(1) : symbol;
    int status = 0;
    const std::unique_ptr<char, void (*)(void*)> name(
        abi::__cxa_demangle(symbol.c_str() + 1, nullptr, nullptr, &status), std::free);
    return status == 0 ? name.get() : symbol;
}

} // namespace

Process::Process(EmulatedPhone& itsPhone, const Loading& loading) :
    phone(itsPhone),
    heap(memory),
    objectiveC(*this),
    slide(loading.slide),
    without(loading.without),
    nextData(dataStart) {
    memory.map(dataStart, dataSize, Memory::Access::readAndWrite);
    memory.map(firstTrap, trapSize * mostTraps, Memory::Access::readAndExecute);
    memory.map(returnAddress, 0x4000, Memory::Access::readAndExecute);
    memory.map(mainStack, mainStackSize, Memory::Access::readAndWrite);
    memory.map(monitorStack, monitorStackSize, Memory::Access::readAndWrite);
    addSystemLibraries(*this);
    checkNamesOfWhatIsLacking();

    const auto& path = loading.library;
    const std::string file = contentOf(path);
    library = readMachO(std::as_bytes(std::span(file)));
    if (const auto named = path.parent_path() / "names" / path.filename(); exists(named))
        takeNames(contentOf(named), file);
    try {
        mapLibrary(std::as_bytes(std::span(file)));
        bindLibrary();
        objectiveC.registerLibrary(library, slide);
    } catch (const Fault& fault) {
        throw BadLibrary(std::string("its content is damaged: ") + fault.what());
    }

    const auto trap = [this](Processor& processor, std::size_t number) {
        if (number >= traps.size())
            throw Fault("a jump to " + inHex(firstTrap + number * trapSize) +
                        ", where there is no function");
        NativeCall call(*this, processor);
        traps[number].function(call);
    };
    main =
        std::make_unique<Processor>(memory, heap, Processor::Stack{mainStack, mainStackSize}, trap);
    monitor = std::make_unique<Processor>(memory, heap,
                                          Processor::Stack{monitorStack, monitorStackSize}, trap);
}

Process::~Process() = default;

void Process::takeNames(const std::string& named, const std::string& stripped) {
    const MachO other = readMachO(std::as_bytes(std::span(named)));
    const auto [address, size] = library.section("__TEXT,__text");
    // The first segment begins with the file, so an address in it is also an offset.
    if (named.size() >= address + size && stripped.size() >= address + size &&
        named.compare(address, size, stripped, address, size) == 0)
        library.symbols = other.symbols;
}

void Process::mapLibrary(std::span<const std::byte> file) {
    for (const auto& segment : library.segments) {
        if (segment.size == 0)
            continue;
        using enum Memory::Access;
        memory.map(slide + segment.address, pagesOf(segment.size),
                   segment.isExecutable ? readAndExecute
                   : segment.isWritable ? readAndWrite
                                        : read);
        const auto content = file.subspan(segment.offset, segment.sizeInFile);
        std::memcpy(memory.at(slide + segment.address, segment.size), content.data(),
                    content.size());
        librarySize = std::max<std::size_t>(librarySize, segment.address + segment.size);
    }
}

void Process::bindLibrary() {
    for (const Address at : library.rebases)
        memory.write(slide + at, memory.read<Address>(slide + at) + slide);
    for (const auto& linked : library.libraries)
        if (!linked.isWeak &&
            (!systemLibraries.contains(linked.installName) || lacks(linked.installName)))
            throw BadLibrary("the phone has no library " + linked.installName);
    for (const auto& bind : library.binds) {
        auto address = bind.library.empty() ? std::optional(exported(bind.symbol))
                                            : found(bind.library, bind.symbol);
        if (!address && !bind.isWeak)
            throw BadLibrary("the symbol " + bind.symbol + " is not in " + bind.library);
        memory.write(slide + bind.at,
                     address ? *address + static_cast<Address>(bind.addend) : Address{0});
    }
}

std::optional<Address> Process::found(const std::string& installName,
                                      const std::string& symbol) const {
    const auto isLacking = [&](const std::string& prefix) {
        return symbol.starts_with(prefix) && lacks(symbol.substr(prefix.size()));
    };
    const auto symbols = systemLibraries.find(installName);
    if (symbols == systemLibraries.end() || lacks(installName) || lacks(symbol) ||
        isLacking(classPrefix) || isLacking(metaclassPrefix))
        return std::nullopt;
    if (const auto entry = symbols->second.find(symbol); entry != symbols->second.end())
        return entry->second;
    const auto [first, last] = exportedAgain.equal_range(installName);
    for (auto other = first; other != last; ++other)
        if (const auto address = found(other->second, symbol))
            return address;
    return std::nullopt;
}

void Process::checkNamesOfWhatIsLacking() const {
    for (const std::string& name : without) {
        bool known = systemLibraries.contains(name) || objectiveC.classNamed(name);
        for (const auto& [installName, symbols] : systemLibraries)
            known = known || symbols.contains(name);
        if (!known)
            throw BadLibrary("no phone has " + name + ", so it cannot be left out");
    }
}

void Process::initialise() {
    const auto [address, size] = library.section("__DATA,__mod_init_func");
    for (Address at = address; at < address + size; at += 8)
        callOnMain(memory.read<Address>(slide + at), {});
}

void Process::addFunction(const std::string& installName, const std::string& symbol,
                          NativeFunction function) {
    systemLibraries[installName][symbol] = makeTrap(symbol, std::move(function));
}

Address Process::addData(const std::string& installName, const std::string& symbol,
                         std::size_t size) {
    const Address address = allocateData(size);
    systemLibraries[installName][symbol] = address;
    return address;
}

Class& Process::addClass(const std::string& installName, const std::string& name,
                         const std::string& superclass) {
    constexpr std::size_t classSize = 40;
    Class& added = objectiveC.define(name, superclass);
    added.address = addData(installName, classPrefix + name, classSize);
    added.metaclass = addData(installName, metaclassPrefix + name, classSize);
    return added;
}

Object& Process::shared(const std::string& className) {
    Object*& object = sharedObjects[className];
    if (!object) {
        Class& isa = objectiveC.existingClass(className);
        object =
            &objectiveC.add(isa.make ? isa.make() : std::make_unique<Object>(), isa, Address{0});
        object->isConstant = true;
    }
    return *object;
}

Address Process::allocateData(std::size_t size) {
    const Address address = nextData;
    nextData += (size + 15) & ~std::size_t{15};
    if (nextData > dataStart + dataSize)
        throw Fault("the data of the phone's libraries is full");
    return address;
}

Address Process::makeTrap(std::string name, NativeFunction function) {
    const Address address = firstTrap + traps.size() * trapSize;
    if (traps.size() == mostTraps)
        throw Fault("there are too many functions");
    traps.push_back({std::move(name), std::move(function)});
    std::memcpy(memory.at(address, sizeof returnInstruction), &returnInstruction,
                sizeof returnInstruction);
    return address;
}

Address Process::addressOf(const std::string& symbol) const {
    for (const auto& [installName, symbols] : systemLibraries)
        if (const auto found = symbols.find(symbol); found != symbols.end())
            return found->second;
    throw Fault("the phone has no symbol " + symbol);
}

Address Process::exported(const std::string& symbol) const {
    const auto found = library.exports.find(symbol);
    if (found == library.exports.end())
        throw BadLibrary("it does not export " + symbol);
    return slide + found->second;
}

Address Process::constantText(const std::string& text) {
    const Address address = allocateData(text.size() + 1);
    std::memcpy(memory.at(address, text.size() + 1), text.c_str(), text.size() + 1);
    return address;
}

std::string Process::describe(Address place) const {
    if (place >= firstTrap && (place - firstTrap) / trapSize < traps.size())
        return demangled(traps[(place - firstTrap) / trapSize].name);
    if (!isInLibrary(place))
        return inHex(place);
    auto symbol = library.symbols.upper_bound(place - slide);
    if (symbol == library.symbols.begin())
        return "the library + " + inHex(place - slide);
    --symbol;
    return demangled(symbol->second) + " + " + inHex(place - slide - symbol->first);
}

std::string Process::whereabouts(const Processor& processor) const {
    std::string text = "in " + describe(processor.instruction());
    if (processor.instruction() == addressOf("_objc_msgSend") && memory.isMapped(processor.x(1), 1))
        text = "in the message " + memory.text(processor.x(1));
    std::vector<Address> callers = processor.callers();
    if (!isInLibrary(processor.instruction()))
        callers.insert(callers.begin(), processor.caller());
    Address last = 0;
    for (const Address caller : callers)
        if (isInLibrary(caller) && caller != last)
            text += "\n    called by " + describe(last = caller);
    return text;
}

std::uint64_t Process::send(Processor& processor, Address receiver, const std::string& selector,
                            std::initializer_list<std::uint64_t> arguments) {
    std::vector<std::uint64_t> words{receiver, objectiveC.selector(selector)};
    words.insert(words.end(), arguments);
    const Address pool = objectiveC.pushPool(processor);
    const std::uint64_t result = processor.call(addressOf("_objc_msgSend"), words);
    objectiveC.popPool(pool, processor);
    return result;
}

std::uint64_t Process::callOnMain(Address function,
                                  std::initializer_list<std::uint64_t> arguments) {
    const Address pool = objectiveC.pushPool(*main);
    const std::uint64_t result = main->call(function, arguments);
    objectiveC.popPool(pool, *main);
    return result;
}

} // namespace noctara::emulated
