#include "platform/cellular.h"

#include "phones/springboard/private_functions.h"
#include "phones/springboard/services.h"

#include <array>

namespace noctara {

namespace {

using enum DataRate;

constexpr std::array knownRates{kCTRegistrationDataRate2G, kCTRegistrationDataRate3G,
                                kCTRegistrationDataRate4G};

CFStringRef constantOf(DataRate rate) {
    return rate == kCTRegistrationDataRate2G   ? ::kCTRegistrationDataRate2G
           : rate == kCTRegistrationDataRate3G ? ::kCTRegistrationDataRate3G
           : rate == kCTRegistrationDataRate4G ? ::kCTRegistrationDataRate4G
                                               : nullptr;
}

class SpringBoardCellular final : public CellularRadio {
public:
    bool dataPlanIsEnabled() override { return CTCellularDataPlanGetIsEnabled(); }

    bool registrationDataIsEnabled() override {
        @autoreleasepool {
            return CTRegistrationGetCellularDataIsEnabled();
        }
    }

    void setDataPlanIsEnabled(bool enabled) override { CTCellularDataPlanSetIsEnabled(enabled); }

    DataRate currentMaxAllowedDataRate() override {
        @autoreleasepool {
            const CFStringRef current = CTRegistrationGetCurrentMaxAllowedDataRate();
            for (const DataRate rate : knownRates)
                if (constantOf(rate) == current)
                    return rate;
            return kCTRegistrationDataRateUnknown;
        }
    }

    bool setMaxAllowedDataRate(DataRate rate) override {
        return CTRegistrationSetMaxAllowedDataRate(constantOf(rate));
    }

    ServerConnectionRef createServerConnection(ServerConnectionCallback callback) override {
        return _CTServerConnectionCreate(kCFAllocatorDefault, callback, nullptr);
    }

    void releaseConnection(ServerConnectionRef connection) override { CFRelease(connection); }

    std::vector<DataRate> supportedDataRates() override {
        std::vector<DataRate> rates;
        const CFTypeRef supported = CTRegistrationCopySupportedDataRates();
        for (const DataRate rate : knownRates)
            if ([(id)supported containsObject:(id)constantOf(rate)])
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
