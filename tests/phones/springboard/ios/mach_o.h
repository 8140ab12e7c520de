/// A Mach-O library, as LLVM's tools read it.
#pragma once

#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace noctara {

struct Import {
    std::string library; ///< The install name.
    bool weak = false;

    bool operator==(const Import&) const = default;
};

using Imports = std::map<std::string, Import>;

class MachO {
public:
    explicit MachO(std::filesystem::path theFile) : file(std::move(theFile)) {}

    std::string bytes() const;

    /// What `llvm-readobj` prints with this option.
    std::string read(const std::string& option) const;

    /// The load commands of this name, each as printed.
    std::vector<std::string> loadCommands(const std::string& name) const;

    std::set<std::string> exports() const;

    /// What the dynamic linker binds. Throws if the symbol table names another library.
    Imports imports() const;

    /// The numbers of the pages whose content is not the one that was signed. Throws if there is no
    /// signature.
    std::vector<std::size_t> pagesThatDifferFromTheSignature() const;

private:
    std::vector<std::string> linesOf(const std::string& tool) const;

    std::filesystem::path file;
};

} // namespace noctara
