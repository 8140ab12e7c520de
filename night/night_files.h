/// The files that a night writes outside the phone's memory. Both are tried before anything is
/// written, so that a night that cannot be played leaves nothing behind.
#pragma once

#include <filesystem>
#include <fstream>
#include <vector>

namespace noctara {

/// The file that the trace goes to. What it held before is gone only once `begin` is called.
class TraceFile {
public:
    /// Throws BadInput when the file cannot be written, or is one of the night's inputs.
    TraceFile(const std::filesystem::path& place, const std::vector<std::filesystem::path>& inputs);

    /// Takes the file away again if it was made for a night that did not begin.
    ~TraceFile();

    TraceFile(const TraceFile&) = delete;
    TraceFile& operator=(const TraceFile&) = delete;

    std::ostream& begin();

    /// False when not all of it could be written.
    bool finish();

    const std::filesystem::path& path() const { return file; }

private:
    std::filesystem::path file;
    bool existed;
    bool begun = false;
    std::ofstream lines;
};

/// Makes the folder for a phone's files, if it is missing. Throws BadInput when that fails, or when
/// nothing can be written there.
void prepareRoot(const std::filesystem::path& root);

} // namespace noctara
