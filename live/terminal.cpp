#include "live/terminal.h"

#include "input/bad_input.h"
#include "live/controls.h"
#include "live/text_cells.h"

#include <clocale>
#include <cstdlib>
#include <cstring>
#include <curses.h>
#include <fcntl.h>
#include <filesystem>
#include <fmt/format.h>
#include <langinfo.h>
#include <term.h>
#include <unistd.h>

namespace noctara {

namespace {

enum ColourPair : short { green = 1, cyan, yellow };

bool wantsColour() {
    const char* const refused = std::getenv("NO_COLOR");
    return !refused || *refused == '\0';
}

std::optional<int> keyOf(int code) {
    switch (code) {
    case ERR:
    case KEY_RESIZE:
        return std::nullopt;
    case KEY_UP:
        return keys::up;
    case KEY_DOWN:
        return keys::down;
    case KEY_LEFT:
        return keys::left;
    case KEY_RIGHT:
        return keys::right;
    case KEY_PPAGE:
        return keys::pageUp;
    case KEY_NPAGE:
        return keys::pageDown;
    case KEY_ENTER:
    case '\r':
        return keys::enter;
    default:
        return code;
    }
}

} // namespace

struct Terminal::State {
    SCREEN* screen;
    bool utf8;
    bool colours;

    attr_t attributes(Style style) const {
        const auto coloured = [this](ColourPair pair) {
            return colours ? static_cast<attr_t>(COLOR_PAIR(pair)) : A_NORMAL;
        };
        switch (style) {
        case Style::plain:
            break;
        case Style::faint:
            return A_DIM;
        case Style::strong:
            return A_BOLD;
        case Style::title:
        case Style::selected:
            return A_REVERSE;
        case Style::on:
            return coloured(green);
        case Style::quiet:
            return coloured(cyan);
        case Style::event:
            return coloured(yellow) | A_BOLD;
        }
        return A_NORMAL;
    }
};

void requireTerminal(const std::string& option) {
    for (const auto& [descriptor, name] :
         {std::pair(STDIN_FILENO, "input"), std::pair(STDOUT_FILENO, "output")})
        if (!isatty(descriptor))
            throw BadInput(fmt::format("{}: standard {} is not a terminal; run it in a terminal, "
                                       "or leave the option out",
                                       option, name));
}

bool isTerminal(const std::filesystem::path& path) {
    // Opening a pipe would disturb its reader.
    if (!std::filesystem::is_character_file(path))
        return false;
    const int descriptor = open(path.c_str(), O_WRONLY | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    const bool is = isatty(descriptor) != 0;
    close(descriptor);
    return is;
}

Terminal::Terminal() : state(std::make_unique<State>()) {
    std::setlocale(LC_CTYPE, "");
    state->utf8 = std::strcmp(nl_langinfo(CODESET), "UTF-8") == 0;
    const char* const type = std::getenv("TERM");
    const std::string named = inQuotes(type ? type : "");
    // newterm would leak for a type that is unknown.
    int error = 0;
    if (setupterm(nullptr, STDOUT_FILENO, &error) != OK)
        throw BadInput("the terminal type " + named +
                       " is unknown; set TERM to the type of this terminal");
    const bool showsScreens = cursor_address != nullptr;
    del_curterm(cur_term);
    state->screen = showsScreens ? newterm(nullptr, stdout, stdin) : nullptr;
    if (!state->screen)
        throw BadInput("a terminal of the type " + named +
                       " cannot show screens; leave out --live, or use another terminal");
    state->colours = wantsColour() && has_colors() && start_color() == OK;
    if (state->colours) {
        use_default_colors();
        init_pair(green, COLOR_GREEN, -1);
        init_pair(cyan, COLOR_CYAN, -1);
        init_pair(yellow, COLOR_YELLOW, -1);
    }
    cbreak();
    noecho();
    set_escdelay(25);
    keypad(stdscr, TRUE);
    nodelay(stdscr, TRUE);
    curs_set(0);
}

Terminal::~Terminal() {
    endwin();
    delscreen(state->screen);
}

Size Terminal::size() const {
    return {getmaxx(stdscr), getmaxy(stdscr)};
}

void Terminal::show(const Screen& screen) {
    erase();
    int row = 0;
    for (const auto& line : screen) {
        move(row++, 0);
        for (const auto& span : line) {
            attrset(state->attributes(span.style));
            addstr(state->utf8 ? span.text.c_str() : inAscii(span.text).c_str());
        }
    }
    attrset(A_NORMAL);
    refresh();
}

std::optional<int> Terminal::key() {
    return keyOf(getch());
}

} // namespace noctara
