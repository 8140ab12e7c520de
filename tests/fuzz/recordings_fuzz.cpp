/// Recordings of the accelerometer, in all the formats that `noctara detect` reads. The first byte
/// chooses the options.
#include "command/detect_command.h"
#include "recording/sensitivity_advice.h"
#include "report/recording_record.h"
#include "tests/fuzz/rules.h"

#include <cmath>
#include <nlohmann/json.hpp>
#include <sstream>

#include <sys/mman.h>
#include <unistd.h>
#include <zlib.h>

namespace noctara {
namespace {

/// A file in memory that can be opened by its name.
class NamedBytes {
public:
    NamedBytes() : descriptor(::memfd_create("recording", MFD_CLOEXEC)) {
        require(descriptor >= 0, "there is memory for the file");
    }

    void set(std::string_view bytes) const {
        require(::ftruncate(descriptor, 0) == 0 && ::lseek(descriptor, 0, SEEK_SET) == 0 &&
                    ::write(descriptor, bytes.data(), bytes.size()) ==
                        static_cast<ssize_t>(bytes.size()),
                "the file is filled");
    }

    std::string name() const { return "/proc/self/fd/" + std::to_string(descriptor); }

private:
    const int descriptor;
};

DetectOptions optionsOf(std::uint8_t choice, const std::string& file) {
    DetectOptions options;
    options.file = file;
    options.wholeTable = (choice & 1) != 0;
    if ((choice & 2) != 0)
        options.recording.rate = 50;
    if ((choice & 4) != 0)
        options.recording.axes = (choice & 8) != 0 ? AxisConvention::ios : AxisConvention::android;
    options.sensitivity = choice >> 4 & 7;
    return options;
}

/// In seconds. 0 for a recording that is refused.
double spanOf(const DetectOptions& options) {
    double span = 0;
    std::ostringstream complaints;
    refusal([&] {
        span = RecordingFile(options.file, options.recording, complaints).summary().lastSeconds;
    });
    return span;
}

struct Detected {
    std::optional<std::string> refused;
    std::string output;
    std::string complaints;

    friend bool operator==(const Detected&, const Detected&) = default;
};

Detected detected(const DetectOptions& options) {
    std::ostringstream output;
    std::ostringstream complaints;
    auto refused = refusal([&] {
        require(detect(options, output, complaints) == 0, "a recording that is read is good");
    });
    require(!refused || output.str().empty(), "a refused recording has no output", output.str());
    requirePlainLines(output.str());
    requirePlainLines(complaints.str());
    return {std::move(refused), output.str(), complaints.str()};
}

/// Keeps the whole recording in memory, as the report does.
void requireSameFromMemory(const DetectOptions& options, const Detected& streamed) {
    std::ostringstream complaints;
    const Recording recording = readRecording(options.file, options.recording, complaints);
    double latest = 0;
    for (const auto& sample : recording.samples) {
        require(std::isfinite(sample.seconds) && sample.seconds >= latest,
                "the samples are in the order of time");
        latest = sample.seconds;
    }
    std::ostringstream output;
    detect(recording, options, output);
    require(output.str() == streamed.output, "a recording in memory gives the same output",
            output.str());
    require(!recordingForPage(recording, "recording", adviceFrom(recording)).dump().empty(),
            "the page has data");
}

std::string compressed(std::string_view bytes) {
    z_stream stream{};
    constexpr int gzipFormat = 16 + MAX_WBITS;
    require(deflateInit2(&stream, Z_BEST_SPEED, Z_DEFLATED, gzipFormat, 8, Z_DEFAULT_STRATEGY) ==
                Z_OK,
            "zlib works");
    std::string result(deflateBound(&stream, bytes.size()), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
    stream.avail_in = static_cast<uInt>(bytes.size());
    stream.next_out = reinterpret_cast<Bytef*>(result.data());
    stream.avail_out = static_cast<uInt>(result.size());
    require(deflate(&stream, Z_FINISH) == Z_STREAM_END, "zlib works");
    result.resize(stream.total_out);
    deflateEnd(&stream);
    return result;
}

} // namespace
} // namespace noctara

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace noctara;
    static const NamedBytes file;
    if (size == 0)
        return 0;
    const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    DetectOptions options = optionsOf(data[0], file.name());
    file.set(bytes);
    // The work grows with the seconds of a recording, and the table with a line for each of them.
    constexpr double longest = 1e6;
    constexpr double longestTable = 1e4;
    const double span = spanOf(options);
    if (span > longest)
        return 0;
    options.wholeTable = options.wholeTable && span < longestTable;
    const Detected plain = detected(options);
    if (!plain.refused)
        requireSameFromMemory(options, plain);
    if ((data[0] & 0x80) != 0 && !bytes.starts_with("\x1f\x8b")) {
        file.set(compressed(bytes));
        require(detected(options) == plain, "a compressed recording is read as the plain one");
    }
    return 0;
}
