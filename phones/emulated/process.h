/// The emulated process: its memory, two processors, the library, and the stand-ins for the phone's
/// own libraries.
#pragma once

#include "phones/emulated/call.h"
#include "phones/emulated/heap.h"
#include "phones/emulated/mach_o.h"
#include "phones/emulated/memory.h"
#include "phones/emulated/objective_c.h"
#include "phones/emulated/processor.h"

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace noctara::emulated {

class EmulatedPhone;

class Process {
public:
    /// Maps the library and binds it. Throws BadLibrary.
    Process(EmulatedPhone& phone, const Loading& loading);
    ~Process();

    /// Runs the library's initialisers.
    void initialise();

    /// Adds a function of one of the phone's libraries.
    void addFunction(const std::string& library, const std::string& symbol,
                     NativeFunction function);
    /// Adds data of one of the phone's libraries.
    Address addData(const std::string& library, const std::string& symbol, std::size_t size);

    /// Adds a class of one of the phone's libraries.
    Class& addClass(const std::string& library, const std::string& name,
                    const std::string& superclass = "NSObject");

    /// An address which calls `function`. `name` is for reports.
    Address makeTrap(std::string name, NativeFunction function);
    Address addressOf(const std::string& symbol) const;

    /// Whether the system of this phone lacks a symbol, a class or a library of the emulated phone.
    bool lacks(const std::string& name) const { return without.contains(name); }

    /// The address of a symbol that the library exports.
    Address exported(const std::string& symbol) const;

    /// A string in memory that nothing frees.
    Address constantText(const std::string& text);

    /// The place of an instruction, by the names in the library: "run (main_loop.cpp) + 0x1c".
    std::string describe(Address place) const;
    /// The place that called a trap, and its callers.
    std::string whereabouts(const Processor& processor) const;

    /// Notes something that the library did wrong. The same text is noted once.
    void report(const std::string& what) { findings.insert(what); }

    /// The one instance of a class of the phone's.
    Object& shared(const std::string& className);

    /// Sends a message and returns x0. An autorelease pool surrounds it.
    std::uint64_t send(Processor& processor, Address receiver, const std::string& selector,
                       std::initializer_list<std::uint64_t> arguments = {});
    std::uint64_t callOnMain(Address function, std::initializer_list<std::uint64_t> arguments);

    bool isInLibrary(Address address) const {
        return address >= slide && address < slide + librarySize;
    }

    EmulatedPhone& phone;
    Memory memory;
    Heap heap;
    ObjectiveC objectiveC;
    MachO library;
    const Address slide;
    std::size_t librarySize = 0;
    std::unique_ptr<Processor> main;
    std::unique_ptr<Processor> monitor;
    std::set<std::string> findings;
    std::map<const void*, Object*> objectsOfParts; ///< By the part of the model.

private:
    struct Trap {
        std::string name;
        NativeFunction function;
    };

    /// Takes the names of functions from a library that has the same code.
    void takeNames(const std::string& named, const std::string& stripped);
    void mapLibrary(std::span<const std::byte> file);
    void bindLibrary();
    /// The address of a symbol of the phone's for the library; nothing if the system lacks it.
    std::optional<Address> found(const std::string& installName, const std::string& symbol) const;
    void checkNamesOfWhatIsLacking() const;
    Address allocateData(std::size_t size);

    const std::set<std::string> without;
    std::vector<Trap> traps;
    std::map<std::string, std::map<std::string, Address>> systemLibraries;
    Address nextData = 0;
    std::map<std::string, Object*> sharedObjects;
};

} // namespace noctara::emulated
