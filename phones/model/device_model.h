/// The model, version and capabilities of the simulated phone, and its libraries that are loaded at
/// run time.
#pragma once

#include "phones/model/recorder.h"
#include "phones/model/scenario.h"
#include "platform/capabilities.h"
#include "platform/device.h"

namespace noctara {

class DeviceModel final : public Device, public DynamicLibraries, public CapabilityFunctions {
public:
    DeviceModel(const Scenario& scenario, const Recorder& calls);

    std::string machine() override;
    std::int32_t userInterfaceIdiom() override;
    double coreFoundationVersionNumber() override;

    LibraryRef open(const char* path) override;
    FunctionRef find(LibraryRef library, const char* name) override;
    void close(LibraryRef library) override;

    int linkedGSSystemHasCapability(const std::string& name) override;
    int callGSSystemHasCapability(FunctionRef function, const std::string& name) override;
    std::optional<PropertyList> callGSSystemCopyCapability(FunctionRef function,
                                                           const std::string& name) override;
    int callMGGetBoolAnswer(FunctionRef function, const std::string& name) override;

    bool hasGestalt;
    bool hasGraphicsServices = true;
    int openLibraries = 0;

private:
    bool hasCapability(const std::string& name) const;

    const Recorder& recorder;
    Scenario::Phone phone;
};

} // namespace noctara
