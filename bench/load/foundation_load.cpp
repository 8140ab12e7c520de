/// A load routine that asks whether the process is SpringBoard.
bool isInSpringBoard();

namespace {

volatile bool answer;

[[gnu::constructor]] void load() {
    answer = isInSpringBoard();
}

} // namespace
