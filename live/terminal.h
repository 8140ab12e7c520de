/// The terminal of the program, on which it shows screens and reads keys.
#pragma once

#include "live/screen.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace noctara {

/// Throws BadInput, which names the option, unless standard input and output are a terminal.
void requireTerminal(const std::string& option);

/// Whether the file is a terminal.
bool isTerminal(const std::filesystem::path& path);

/// Takes over the terminal. The destructor leaves it as it was before. Stopping the program with
/// Ctrl-Z leaves it as it was until the program goes on. Only one object can exist at a time.
class Terminal {
public:
    /// Throws BadInput if the type of the terminal is unknown or cannot show screens.
    Terminal();
    ~Terminal();
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    /// The size now. It changes when the user resizes the terminal.
    Size size() const;

    void show(const Screen& screen);

    /// The next key that was pressed, as a character or one of the constants in controls.h. Absent
    /// if there is none. Does not wait.
    std::optional<int> key();

private:
    struct State;
    std::unique_ptr<State> state;
};

} // namespace noctara
