#include "phones/emulated/objective_c.h"
#include "phones/emulated/process.h"

#include <set>

namespace noctara::emulated {

void ObjectiveC::checkLeaks(const std::vector<Processor*>& processors) {
    // As a conservative garbage collector does: everything that looks like a pointer is one.
    std::set<Address> reached;
    std::vector<Address> toVisit;
    const auto reach = [&](Address pointer) {
        const auto* block = process.heap.find(pointer);
        if (block && reached.insert(block->first).second)
            toVisit.push_back(block->first);
    };
    const auto scan = [&](Address start, std::size_t size) {
        for (Address at = (start + 7) & ~Address{7}; at + 8 <= start + size; at += 8)
            reach(process.memory.read<Address>(at));
    };
    for (const auto& segment : process.library.segments)
        if (segment.isWritable)
            scan(process.slide + segment.address, segment.size);
    for (Processor* const processor : processors) {
        const auto [start, size] = processor->usedStack();
        scan(start, size);
        for (unsigned i = 0; i <= 30; ++i)
            reach(processor->x(i));
        for (const Pool& pool : pools[processor])
            for (const auto& entry : pool.entries)
                reach(entry.object->address);
    }
    for (const auto& [address, object] : objects)
        if (object->place == 0 || object->isConstant)
            reach(address);
    while (!toVisit.empty()) {
        const Address block = toVisit.back();
        toVisit.pop_back();
        scan(block, process.heap.blocks().at(block).size);
        if (const auto found = objects.find(block); found != objects.end())
            for (const Object* const owned : found->second->owned())
                reach(owned->address);
    }
    for (const auto& [address, block] : process.heap.blocks()) {
        if (reached.contains(address) || block.place == 0)
            continue;
        const auto found = objects.find(address);
        const std::string what = found == objects.end()
                                     ? "a block of the heap"
                                     : "an object of class " + found->second->isa->name;
        process.report(what + " is never released: " + process.describe(block.place));
    }
}

} // namespace noctara::emulated
