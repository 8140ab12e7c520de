#include "platform/cellular.h"

#include "phones/springboard/private_functions.h"
#include "phones/springboard/services.h"

#include <array>

namespace noctara {

namespace {

using enum DataRate;

constexpr std::array knownRates{kCTRegistrationDataRate2G, kCTRegistrationDataRate3G,
                                kCTRegistrationDataRate4G};

/// Null for an unknown rate, and for one that the system lacks.
CFStringRef constantOf(DataRate rate) {
    return rate == kCTRegistrationDataRate2G   ? valueIfPresent(&::kCTRegistrationDataRate2G)
           : rate == kCTRegistrationDataRate3G ? valueIfPresent(&::kCTRegistrationDataRate3G)
           : rate == kCTRegistrationDataRate4G ? valueIfPresent(&::kCTRegistrationDataRate4G)
                                               : nullptr;
}

class SpringBoardCellular final : public CellularRadio {
public:
    bool dataPlanIsEnabled() override { return callIfPresent(CTCellularDataPlanGetIsEnabled); }

    bool registrationDataIsEnabled() override {
        @autoreleasepool {
            return callIfPresent(CTRegistrationGetCellularDataIsEnabled);
        }
    }

    void setDataPlanIsEnabled(bool enabled) override {
        callIfPresent(CTCellularDataPlanSetIsEnabled, enabled);
    }

    DataRate currentMaxAllowedDataRate() override {
        @autoreleasepool {
            const CFStringRef current = callIfPresent(CTRegistrationGetCurrentMaxAllowedDataRate);
            for (const DataRate rate : knownRates)
                if (current && constantOf(rate) == current)
                    return rate;
            return kCTRegistrationDataRateUnknown;
        }
    }

    bool setMaxAllowedDataRate(DataRate rate) override {
        return callIfPresent(CTRegistrationSetMaxAllowedDataRate, constantOf(rate));
    }

    ServerConnectionRef createServerConnection(ServerConnectionCallback callback) override {
        return callIfPresent(_CTServerConnectionCreate, kCFAllocatorDefault, callback, nullptr);
    }

    void releaseConnection(ServerConnectionRef connection) override { CFRelease(connection); }

    std::vector<DataRate> supportedDataRates() override {
        std::vector<DataRate> rates;
        const CFTypeRef supported = callIfPresent(CTRegistrationCopySupportedDataRates);
        for (const DataRate rate : knownRates)
            if (const CFStringRef constant = constantOf(rate);
                constant && [(id)supported containsObject:(id)constant])
                rates.push_back(rate);
        if (supported)
            CFRelease(supported);
        return rates;
    }
};

} // namespace

CellularRadio& springBoardCellular() {
    static auto& cellular = *new SpringBoardCellular;
    return cellular;
}

} // namespace noctara
