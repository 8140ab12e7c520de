extern "C" void setEnabled(double) __asm("_CTCellularDataPlanSetIsEnabled");

namespace {

[[gnu::constructor]] void passAReal() {
    setEnabled(1);
}

} // namespace
