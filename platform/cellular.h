/// The cellular radio (CoreTelephony): data, data rates, and the telephony server.
#pragma once

#include <vector>

namespace noctara {

/// A data rate of the cellular radio.
enum class DataRate {
    kCTRegistrationDataRateUnknown, ///< Any value that is none of the rates below.
    kCTRegistrationDataRate2G,
    kCTRegistrationDataRate3G,
    kCTRegistrationDataRate4G,
};

/// A connection to the telephony server, released by `CellularRadio::releaseConnection`.
using ServerConnectionRef = void*;

/// Called by the telephony server. The server passes arguments, which the callback ignores.
using ServerConnectionCallback = void (*)();

class CellularRadio {
public:
    virtual ~CellularRadio() = default;

    /// Whether cellular data is on (`CTCellularDataPlanGetIsEnabled`,
    /// `CTRegistrationGetCellularDataIsEnabled`: both functions give the same answer).
    virtual bool dataPlanIsEnabled() = 0;
    virtual bool registrationDataIsEnabled() = 0;

    /// `CTCellularDataPlanSetIsEnabled`.
    virtual void setDataPlanIsEnabled(bool enabled) = 0;

    /// `CTRegistrationGetCurrentMaxAllowedDataRate`.
    virtual DataRate currentMaxAllowedDataRate() = 0;

    /// `CTRegistrationSetMaxAllowedDataRate` and its result.
    virtual bool setMaxAllowedDataRate(DataRate rate) = 0;

    /// `_CTServerConnectionCreate` with the default allocator and no context. Null when the
    /// telephony server cannot be reached.
    virtual ServerConnectionRef createServerConnection(ServerConnectionCallback callback) = 0;
    virtual void releaseConnection(ServerConnectionRef connection) = 0;

    /// The rates that the radio supports (`CTRegistrationCopySupportedDataRates`).
    virtual std::vector<DataRate> supportedDataRates() = 0;
};

} // namespace noctara
