#include "platform/preferences.h"

#include "phones/springboard/property_list_values.h"
#include "phones/springboard/services.h"

#import <CoreFoundation/CoreFoundation.h>

namespace noctara {

namespace {

class SpringBoardPreferences final : public Preferences {
public:
    void setAppValue(const char* key, const PropertyList& value, const char* domain) override {
        @autoreleasepool {
            CFPreferencesSetAppValue((CFStringRef)stringOf(key), (CFPropertyListRef)objectOf(value),
                                     (CFStringRef)stringOf(domain));
        }
    }

    void appSynchronize(const char* domain) override {
        @autoreleasepool {
            CFPreferencesAppSynchronize((CFStringRef)stringOf(domain));
        }
    }
};

} // namespace

Preferences& springBoardPreferences() {
    static auto& preferences = *new SpringBoardPreferences;
    return preferences;
}

} // namespace noctara
