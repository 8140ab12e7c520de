/// Preference domains (CoreFoundation preferences).
#pragma once

#include "platform/property_list.h"

namespace noctara {

class Preferences {
public:
    virtual ~Preferences() = default;

    /// Sets one key of a domain (`CFPreferencesSetAppValue`). `appSynchronize` writes it to disk.
    virtual void setAppValue(const char* key, const PropertyList& value, const char* domain) = 0;

    /// Writes the changes of a domain to disk (`CFPreferencesAppSynchronize`).
    virtual void appSynchronize(const char* domain) = 0;
};

} // namespace noctara
