/// The tables of a Mach-O file that say what the loader changes in its data, and what it exports.
#pragma once

#include "phones/emulated/mach_o.h"

#include <cstddef>
#include <span>

namespace noctara::emulated {

struct FixupTables {
    std::span<const std::byte> rebases;
    std::span<const std::byte> binds;
    std::span<const std::byte> weakBinds;
    std::span<const std::byte> lazyBinds;
    std::span<const std::byte> exports;
};

/// Adds the rebases, binds and exports to `result`, which has its segments and libraries already.
/// Throws BadLibrary.
void readFixups(const FixupTables& tables, MachO& result);

} // namespace noctara::emulated
