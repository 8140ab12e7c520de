/// A child process that prints the story of a night: `noctara replay`, which reads the trace of the
/// night from a pipe. A phone whose monitor is inside a library cannot print the story itself.
#pragma once

#include "night/scenario_file.h"
#include "night/trace.h"
#include "phones/model/phone_observer.h"

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace noctara {

/// The arguments of `noctara` for the story of a night.
std::vector<std::string> storyArguments(const std::optional<std::filesystem::path>& scenario,
                                        const ScenarioOverrides& overrides, bool log);

class StoryProcess final : public PhoneObserver {
public:
    /// Starts the command with these arguments. It writes to this process's standard output. With
    /// `live`, each line reaches it at once, and looks at the clock are among the lines. Throws
    /// std::system_error.
    StoryProcess(const std::filesystem::path& command, std::vector<std::string> arguments,
                 bool live);

    /// Ends a process whose story was not finished, without a word of it.
    ~StoryProcess() override;

    StoryProcess(const StoryProcess&) = delete;
    StoryProcess& operator=(const StoryProcess&) = delete;

    void called(const Call& call) override { writer->called(call); }
    void happens(const Happening& happening) override { writer->happens(happening); }

    /// Ends the story; `endedEarly` says why the night did not come to its end, if it did not. The
    /// result is the exit code of the process.
    int finish(Date at, const std::optional<std::string>& endedEarly);

private:
    pid_t process = 0;
    std::ofstream lines;
    std::optional<TraceWriter> writer;
};

} // namespace noctara
