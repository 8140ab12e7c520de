/// The hashes in a Mach-O file's signature. A phone does not run a page of code whose hash differs.
#pragma once

#include <cstddef>
#include <span>

namespace noctara::emulated {

/// Throws BadLibrary if the signature is damaged, does not cover the file in front of it, or has
/// another hash for a page. Who signed is not checked: the loaders of phones that accept this
/// library do not check it either.
void checkCodeSignature(std::span<const std::byte> file, std::span<const std::byte> signature);

} // namespace noctara::emulated
