extern "C" void* objc_autoreleasePoolPush();
extern "C" void objc_autoreleasePoolPop(void*);

namespace {

[[gnu::constructor]] void popTheOuterPool() {
    void* const outer = objc_autoreleasePoolPush();
    objc_autoreleasePoolPush();
    objc_autoreleasePoolPop(outer);
}

} // namespace
