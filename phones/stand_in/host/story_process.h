/// The process that tells the story of the night: `noctara replay`, which is fed what happens as a
/// trace. It follows the monitor's decisions, which this process cannot: the monitor is inside the
/// injected library, and no second one is linked in here.
#pragma once

#include "night/trace.h"
#include "phones/model/phone_observer.h"

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace noctara {

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
