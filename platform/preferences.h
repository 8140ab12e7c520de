/// Preference domains (CoreFoundation preferences).
#pragma once

#include "platform/property_list.h"

namespace noctara {

class Preferences {
public:
    virtual ~Preferences() = default;

    /// Sets one key of a domain (`CFPreferencesSetAppValue`); `synchronize` makes it last.
    virtual void setAppValue(const char* key, const PropertyList& value, const char* domain) = 0;

    /// Writes out what was set in a domain (`CFPreferencesAppSynchronize`).
    virtual void appSynchronize(const char* domain) = 0;
};

} // namespace noctara
