/// The folder for the phone's files. It is checked before the night begins, so that a night that
/// cannot be played changes no file.
#pragma once

#include <filesystem>

namespace noctara {

/// Creates the folder for a phone's files if it is missing. Throws BadInput if that fails or if the
/// folder cannot be written.
void prepareRoot(const std::filesystem::path& root);

} // namespace noctara
