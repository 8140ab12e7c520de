/// The load routine of the library that asks where it is.
bool isInSpringBoard();

namespace {

volatile bool answer;

[[gnu::constructor]] void load() {
    answer = isInSpringBoard();
}

} // namespace
