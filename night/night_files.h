/// The files that a night writes: its trace and the phone's files. Both places are checked before
/// the night begins, so that a night that cannot be played changes no file.
#pragma once

#include <filesystem>
#include <fstream>
#include <vector>

namespace noctara {

/// The file for the trace. Its old content is kept until `begin` is called.
class TraceFile {
public:
    /// Throws BadInput if the file cannot be written or is one of the night's inputs.
    TraceFile(const std::filesystem::path& place, const std::vector<std::filesystem::path>& inputs);

    /// Removes the file if it is new and `begin` was not called.
    ~TraceFile();

    TraceFile(const TraceFile&) = delete;
    TraceFile& operator=(const TraceFile&) = delete;

    std::ostream& begin();

    /// False if not all of it could be written.
    bool finish();

    const std::filesystem::path& path() const { return file; }

private:
    std::filesystem::path file;
    bool existed;
    bool begun = false;
    std::ofstream lines;
};

/// Creates the folder for a phone's files if it is missing. Throws BadInput if that fails or if the
/// folder cannot be written.
void prepareRoot(const std::filesystem::path& root);

} // namespace noctara
