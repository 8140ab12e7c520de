/// A file that the command writes for the user.
#pragma once

#include "output/interruption.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace noctara {

/// The file is written aside, in the same folder, and renamed when it is whole. Until then a file
/// that was there before stays as it was, also if a signal ends the command. A link stays a link:
/// the file that it points to is replaced. The new file has its permissions and, where this user
/// may set them, its owner and group. A pipe or a device is written directly.
class OutputFile {
public:
    /// Whether the name stands for standard output: a hyphen or /dev/stdout.
    static bool isStandardOutput(const std::filesystem::path& place);

    /// `option` is the option of the command that names the file, for errors. Throws BadInput if
    /// the file cannot be written or is one of the command's inputs.
    OutputFile(const std::string& option, std::filesystem::path place,
               const std::vector<std::filesystem::path>& inputs);

    /// Removes what was written if it was not kept.
    ~OutputFile();

    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    std::ostream& stream();

    /// Puts the file in its place. False, and nothing is in its place, if not all of it could be
    /// written.
    bool keep();

    const std::filesystem::path& path() const { return file; }

private:
    const InterruptionWatch watch;
    const std::filesystem::path file;
    std::filesystem::path target; ///< The file itself, without links.
    std::filesystem::path aside;  ///< Empty for a pipe or a device, and once the file is kept.
    std::ofstream bytes;
};

} // namespace noctara
