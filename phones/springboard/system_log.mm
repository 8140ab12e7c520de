#include "platform/system_log.h"

#include "phones/springboard/property_list_values.h"
#include "phones/springboard/services.h"

namespace noctara {

namespace {

class SpringBoardLog final : public SystemLog {
public:
    void write(const std::string& text) override {
        @autoreleasepool {
            NSLog(@"%@", stringOf(text));
        }
    }
};

} // namespace

SystemLog& springBoardLog() {
    static auto& log = *new SpringBoardLog;
    return log;
}

} // namespace noctara
