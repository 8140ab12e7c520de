/// A shell in a terminal, which tmux provides.
#pragma once

#include "input/temporary_folder.h"
#include "tests/programs.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <string>
#include <thread>

namespace noctara {

/// `noctara` is the command of this build there.
class ATerminal : public testing::Test {
protected:
    /// The shell tells the modes of its terminal before each prompt, and the exit code before.
    void open(int width = 80, int height = 24) {
        std::ofstream(folder.path / "rc")
            << "PS1='exit $? $(stty -g | tr -d \"\\n\" | md5sum | cut -c1-8) ready> '\n"
               "unset NO_COLOR\n"
               "noctara() { '" NOCTARA_COMMAND "' \"$@\"; }\n";
        tmux("new-session -d -x " + std::to_string(width) + " -y " + std::to_string(height) +
             " -e LC_ALL=C.UTF-8 -c '" NOCTARA_SOURCE_DIR "' 'bash --rcfile " +
             (folder.path / "rc").string() + "'");
        const auto shown = waitFor(" ready>");
        prompt = shown.substr(shown.find(" ready>") - 8, 8);
    }

    ~ATerminal() override { tmux("kill-server 2>/dev/null"); }

    std::string tmux(const std::string& command) {
        return run("tmux -S '" + (folder.path / "socket").string() + "' -f /dev/null " + command)
            .output;
    }

    void type(const std::string& keys) { tmux("send-keys -- " + keys); }
    void enter(const std::string& command) {
        tmux("send-keys -l -- \"" + command + "\"");
        type("Enter");
    }

    std::string screen() { return tmux("capture-pane -p"); }

    /// Waits until the screen shows this, and returns the screen.
    std::string waitFor(const std::string& text) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        std::string shown = screen();
        while (shown.find(text) == shown.npos) {
            if (std::chrono::steady_clock::now() > deadline) {
                ADD_FAILURE() << "waited for " << text << " in vain:\n" << shown;
                break;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            shown = screen();
        }
        return shown;
    }

    TemporaryFolder folder;
    std::string prompt; ///< The modes of the terminal in the prompt of the shell.
};

} // namespace noctara
