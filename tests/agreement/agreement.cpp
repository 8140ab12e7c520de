#include "tests/agreement/agreement.h"

#include "soak/random_scenario.h"
#include "tests/agreement/trace_difference.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <spawn.h>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace noctara {

namespace {

namespace fs = std::filesystem;

/// Far longer than any play takes, even under a sanitizer. After it, a play counts as deadlocked.
const std::string mostSeconds = "300";

/// All phones have to make all calls in the same order, across both threads.
constexpr TraceOrder comparedOrder = TraceOrder::whole;

const std::string sleepStateSentence = "The phone is quiet.";

/// The path of the scenario with another extension.
fs::path beside(const fs::path& scenario, const std::string& ending) {
    return scenario.parent_path() / (scenario.stem().string() + ending);
}

std::string contents(const fs::path& file) {
    std::ostringstream text;
    text << std::ifstream(file).rdbuf();
    return text.str();
}

std::size_t count(const std::string& text, const std::string& sentence) {
    std::size_t found = 0;
    for (auto place = text.find(sentence); place != text.npos;
         place = text.find(sentence, place + 1))
        ++found;
    return found;
}

/// What waitpid reports of the command, whose output goes to the file.
int run(std::vector<std::string> command, const fs::path& output) {
    std::vector<char*> arguments;
    for (std::string& word : command)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);

    posix_spawn_file_actions_t redirections;
    posix_spawn_file_actions_init(&redirections);
    posix_spawn_file_actions_addopen(&redirections, 1, output.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                     0644);
    posix_spawn_file_actions_adddup2(&redirections, 1, 2);
    pid_t child = 0;
    const int failure =
        posix_spawnp(&child, arguments[0], &redirections, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&redirections);
    if (failure != 0)
        throw std::system_error(failure, std::generic_category(), command[0]);
    int status = 0;
    while (waitpid(child, &status, 0) < 0)
        if (errno != EINTR)
            throw std::system_error(errno, std::generic_category(), command[0]);
    return status;
}

/// One of the plays.
struct Play {
    const Player& player;
    std::vector<std::string> command;
    fs::path trace;
    fs::path output;

    Play(const Player& itsPlayer, const fs::path& scenario) :
        player(itsPlayer),
        command(player.command),
        trace(beside(scenario, '.' + player.name + ".jsonl")),
        output(beside(scenario, '.' + player.name + ".txt")) {
        command.insert(command.end(), {scenario.string(), "--trace", trace.string()});
    }

    /// Empty if the program has played the night: it exits with 0, or with 1 if it found
    /// something wrong with the night.
    std::string playAndComplain() {
        // What an earlier play left must not be taken for this one's.
        fs::remove(trace);
        const int status = runLimited(command);
        if (WIFSIGNALED(status))
            return complaint("was ended by signal " + std::to_string(WTERMSIG(status)));
        code = WEXITSTATUS(status);
        if (code == 124)
            return complaint("did not end within " + mostSeconds + " seconds");
        if (code > 1)
            return complaint("exited with " + std::to_string(code));
        return {};
    }

    Trace read() const {
        std::ifstream lines(trace);
        if (!lines)
            throw BadTrace(trace.string() + ": was not written");
        return readTrace(lines, trace.filename().string(), comparedOrder);
    }

    /// From which place in the library the call of a line came. Empty if the program cannot tell.
    std::string placeOf(std::size_t line) {
        if (player.placeOption.empty() || line == 0)
            return {};
        std::vector<std::string> again = command;
        again.insert(again.end(), {player.placeOption, std::to_string(line)});
        runLimited(again);
        const std::string text = contents(output);
        const auto place = text.find("Line " + std::to_string(line) + " was written");
        return place == text.npos ? std::string() : text.substr(place);
    }

    int exitCode() const { return code; }

    std::string commandLine() const {
        std::string line;
        for (const auto& word : command)
            line += (line.empty() ? "" : " ") + word;
        return line;
    }

private:
    int runLimited(const std::vector<std::string>& program) const {
        std::vector<std::string> limited{"timeout", "--foreground", "--kill-after=10", mostSeconds};
        limited.insert(limited.end(), program.begin(), program.end());
        return run(limited, output);
    }

    std::string complaint(const std::string& end) const {
        return "the " + player.name + " play " + end + "; it printed:\n" + contents(output) + '\n';
    }

    int code = 0;
};

/// Empty if the two agree.
std::string compare(const Play& first, const Trace& expected, Play& other) {
    std::string wrong;
    if (first.exitCode() != other.exitCode())
        wrong = "one of the plays found something wrong with the night, the other did not:\n" +
                contents((first.exitCode() == 0 ? other : first).output) + '\n';
    if (const auto difference = traceDifference(expected, other.read()))
        wrong += difference->text + other.placeOf(difference->otherLine);
    return wrong;
}

} // namespace

Agreement playOnAll(const fs::path& scenario, const Players& players) {
    std::vector<Play> plays;
    for (const Player& player : players)
        plays.emplace_back(player, scenario);
    Agreement agreement;
    std::string wrong;
    for (Play& play : plays)
        wrong += play.playAndComplain();
    try {
        const Trace expected = plays.front().read();
        agreement.lines = expected.lines;
        agreement.sleepStates = count(contents(plays.front().output), sleepStateSentence);
        if (expected.lines == 0)
            wrong += expected.name + " is empty\n";
        for (std::size_t i = 1; i < plays.size(); ++i)
            wrong += compare(plays.front(), expected, plays[i]);
    } catch (const BadTrace& error) {
        wrong += std::string(error.what()) + '\n';
    }
    if (!wrong.empty()) {
        wrong += "Played by\n";
        for (const Play& play : plays)
            wrong += "  " + play.commandLine() + '\n';
        agreement.difference = wrong;
    }
    return agreement;
}

fs::path writeRandomScenario(std::uint64_t seed, const fs::path& folder) {
    const fs::path file = folder / ("seed-" + std::to_string(seed) + ".toml");
    std::ofstream(file) << randomScenario(seed);
    return file;
}

} // namespace noctara
