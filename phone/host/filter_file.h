/// The loader's filter: into which processes a library goes.
#pragma once

#include <filesystem>
#include <string>

namespace noctara {

enum class FilterAnswer { matches, matchesNot, unreadable };

/// Whether the filter file (a property list: "Filter", in it "Bundles", an array of bundle
/// identifiers) lets a library into a process of this bundle. A file that names no bundles lets it
/// into every process.
FilterAnswer askFilter(const std::filesystem::path& filter, const std::string& bundle);

} // namespace noctara
