#include "live/views.h"

#include "live/lane_view.h"
#include "live/text_cells.h"
#include "night/local_clock_text.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>

namespace noctara {

namespace {

/// From this width on, names and values are not shortened.
constexpr int wide = 76;

/// From this height on, there is a line with times of day.
constexpr int tall = 22;

/// The width of the time at the beginning of a line of a story.
constexpr int storyIndent = 10;

struct LaneTitle {
    const char* text;
    const char* shortText;
};

constexpr std::array<LaneTitle, laneCount> laneTitles{{
    {"Posture", "Posture"},
    {"Countdown", "Countdown"},
    {"State", "State"},
    {"Airplane mode", "Airplane"},
    {"Wi-Fi", "Wi-Fi"},
    {"Bluetooth", "Bluetooth"},
    {"Cellular data", "Cell data"},
    {"Data rate", "Data rate"},
    {"Location", "Location"},
    {"Call", "Call"},
    {"Charger", "Charger"},
    {"Idle sleep", "Idle sl."},
    {"Wake-up", "Wake-up"},
    {"Cues", "Cues"},
    {"Applications", "Apps"},
}};

struct Columns {
    int title;
    int value;
    int strip;
};

Columns columnsOf(int width) {
    Columns columns = width >= wide ? Columns{13, 19, 0} : Columns{9, 18, 0};
    columns.strip = width - columns.title - columns.value - 3;
    return columns;
}

bool isTooSmall(Size size) {
    return size.width < smallestSize.width || size.height < smallestSize.height;
}

Screen tooSmall(Size size) {
    return {{{cutTo(fmt::format("Too small: {} by {} at least. q quits.", smallestSize.width,
                                smallestSize.height),
                    size.width)}}};
}

/// The title line, with `right` at its right end.
Line titleLine(const std::string& left, const std::string& right, int width) {
    return {{fitted(" " + left, width - cellsOf(right) - 1) + right + " ", Style::title}};
}

std::string speedInWords(double speed) {
    return fmt::format("{}×", speed);
}

Line nightTitle(const NightPicture& picture, const PlayState& play, int width) {
    std::string left = fmt::format("{}  {}", dayText(picture.zone, picture.clock),
                                   timeText(picture.zone, picture.clock));
    if (width >= wide)
        left = "Noctara  " + left;
    return titleLine(left, speedInWords(play.speed) + (play.paused ? "  paused" : ""), width);
}

Style valueStyle(LaneName name, Mark mark) {
    // The marks of cues, wake-ups and applications belong to the past.
    const bool isPast = !lasts(name) && name != LaneName::countdown;
    return isPast ? Style::plain : glyphOf(mark).style;
}

Line laneLine(std::size_t index, const Lane& lane, const TimeAxis& axis, const Columns& columns,
              bool isWide) {
    const auto name = static_cast<LaneName>(index);
    const auto& title = laneTitles[index];
    Line line{{" " + fitted(isWide ? title.text : title.shortText, columns.title) + " "},
              {fitted(showable(lane.value), columns.value) + " ", valueStyle(name, lane.mark)}};
    for (auto& span : laneStrip(name, lane, axis))
        line.push_back(std::move(span));
    return line;
}

Line ruleLine(const std::string& heading, const std::string& notice, int width) {
    std::string rule;
    const std::string text = " " + heading + " ";
    const std::string said = notice.empty() ? "" : " " + notice + " ";
    for (int cell = cellsOf(text) + cellsOf(said) + 2; cell < width; ++cell)
        rule += "─";
    return {{"─", Style::faint},
            {text, Style::strong},
            {rule, Style::faint},
            {said, Style::event},
            {"─", Style::faint}};
}

/// The latest lines of the story, `height` of them.
Screen storyLines(const std::deque<std::string>& story, int width, int height) {
    Screen lines;
    const auto wanted = static_cast<std::size_t>(std::max(0, height));
    for (auto told = story.rbegin(); told != story.rend() && lines.size() < wanted; ++told) {
        auto parts = wrapped(showable(*told), width - 2, storyIndent);
        for (auto part = parts.rbegin(); part != parts.rend(); ++part)
            lines.push_back({{" " + *part}});
    }
    if (lines.size() > wanted)
        lines.resize(wanted);
    std::reverse(lines.begin(), lines.end());
    lines.resize(wanted);
    return lines;
}

/// As many commands as fit; the last two always do.
Line keyLine(int width) {
    const auto commands = Controls::commands();
    const auto cells = [](const auto& command) {
        return static_cast<int>(command.shownKey.size() + command.word.size()) + 2;
    };
    int room = width - 1;
    for (const auto& command : commands.last(2))
        room -= cells(command);
    Line line{{" "}};
    for (const auto& command : commands) {
        const bool isLast = &command >= commands.last(2).data();
        if (command.word.empty() || (!isLast && cells(command) > room))
            continue;
        if (!isLast)
            room -= cells(command);
        line.push_back({std::string(command.shownKey), Style::strong});
        line.push_back({fmt::format(" {} ", command.word), Style::faint});
    }
    return line;
}

/// Keys with what they do, for the menu and the help.
Line hintLine(std::initializer_list<std::pair<const char*, const char*>> hints) {
    Line line{{" "}};
    for (const auto& [key, meaning] : hints) {
        line.push_back({key, Style::strong});
        line.push_back({fmt::format(" {}  ", meaning), Style::faint});
    }
    return line;
}

std::string valueInWords(const MenuItem& item) {
    return item.isNumber ? fmt::format("{}", item.value) : item.value != 0 ? "on" : "off";
}

} // namespace

Screen nightScreen(const NightPicture& picture, const PlayState& play, Size size) {
    if (isTooSmall(size))
        return tooSmall(size);
    const Columns columns = columnsOf(size.width);
    const TimeAxis axis{picture.start, picture.now, picture.end, columns.strip};
    Screen screen{nightTitle(picture, play, size.width)};
    if (size.height >= tall)
        screen.push_back({{std::string(static_cast<std::size_t>(size.width - columns.strip), ' ') +
                               timeLabels(picture.zone, axis),
                           Style::faint}});
    for (std::size_t i = 0; i < laneCount; ++i)
        screen.push_back(laneLine(i, picture.lanes[i], axis, columns, size.width >= wide));
    screen.push_back(ruleLine("Story", showable(play.notice), size.width));
    const int room = size.height - static_cast<int>(screen.size()) - 1;
    for (auto& line : storyLines(picture.story, size.width, room))
        screen.push_back(std::move(line));
    screen.push_back(keyLine(size.width));
    return screen;
}

Screen settingsScreen(const std::vector<MenuItem>& items, std::size_t selected, Size size) {
    if (isTooSmall(size))
        return tooSmall(size);
    Screen screen{titleLine("Settings", "time stands still", size.width)};
    const auto room = static_cast<std::size_t>(size.height - 4);
    const std::size_t first = selected < room ? 0 : selected - room + 1;
    constexpr int valueCells = 6;
    const int keyCells = std::min(40, size.width - valueCells - 20);
    for (std::size_t i = first; i < items.size() && i < first + room; ++i) {
        const MenuItem& item = items[i];
        const Style style = i == selected     ? Style::selected
                            : item.value != 0 ? Style::plain
                                              : Style::faint;
        screen.push_back({{fmt::format(" {} {} {} ", fitted(showable(item.key), keyCells),
                                       fitted(valueInWords(item), valueCells),
                                       fitted(item.isMissing ? "not in the file" : "", 15)),
                           style}});
    }
    screen.resize(room + 1);
    const MenuItem& item = items[selected];
    screen.push_back(ruleLine(fmt::format("{} of {}", selected + 1, items.size()), "", size.width));
    screen.push_back({{" " + cutTo(showable(item.meaning), size.width - 2)}});
    screen.push_back(item.isNumber
                         ? hintLine({{"↑ ↓", "choose"}, {"← →", "change"}, {"Esc", "back"}})
                         : hintLine({{"↑ ↓", "choose"}, {"Space", "change"}, {"Esc", "back"}}));
    return screen;
}

Screen helpScreen(Size size) {
    if (isTooSmall(size))
        return tooSmall(size);
    Screen screen{titleLine("Keys", "time stands still", size.width), {}};
    const auto commands = Controls::commands();
    const std::size_t rows = (commands.size() + 1) / 2;
    const int textCells = size.width / 2 - 8;
    for (std::size_t row = 0; row < rows; ++row) {
        Line line;
        for (std::size_t i = row; i < commands.size(); i += rows) {
            line.push_back({" " + fitted(commands[i].shownKey, 5) + " ", Style::strong});
            line.push_back({fitted(commands[i].meaning, textCells) + " "});
        }
        screen.push_back(std::move(line));
    }
    const auto legend = [&](std::initializer_list<std::pair<Mark, const char*>> marks) {
        Line line{{" "}};
        for (const auto& [mark, meaning] : marks) {
            const Glyph glyph = glyphOf(mark);
            line.push_back({glyph.text, glyph.style});
            line.push_back({fmt::format(" {}  ", meaning)});
        }
        screen.push_back(std::move(line));
    };
    screen.push_back({});
    legend({{Mark::screenDown, "screen down"},
            {Mark::screenUp, "screen up"},
            {Mark::otherPosture, "other"},
            {Mark::noSample, "no sample"}});
    legend({{Mark::thirdReading, "third reading of a countdown"}, {Mark::quiet, "quiet"}});
    legend(
        {{Mark::off, "watching, or off"}, {Mark::notWatching, "not watching"}, {Mark::on, "on"}});
    legend({{Mark::wakeUp, "wake-up"}, {Mark::sound, "sound"}, {Mark::vibration, "vibration"}});
    legend({{Mark::launchedApplication, "application launched"}, {Mark::quitApplication, "quit"}});
    screen.resize(static_cast<std::size_t>(size.height - 1));
    screen.push_back({{" Any key goes back.", Style::faint}});
    return screen;
}

Screen screenOf(LiveNight& night, const Controls& controls, Size size) {
    switch (controls.page()) {
    case Controls::Page::settings:
        return settingsScreen(controls.settings().items(), controls.settings().selected(), size);
    case Controls::Page::help:
        return helpScreen(size);
    case Controls::Page::night:
        break;
    }
    return nightScreen(night.picture(), {controls.speed(), controls.isPaused(), controls.notice()},
                       size);
}

} // namespace noctara
