#include "phones/springboard/private_functions.h"
#include "phones/stand_in/stand_in_phone.h"
#include "platform/cellular.h"

using noctara::DataRate;
using noctara::PhoneCall;

extern const CFStringRef kCTRegistrationDataRate2G = (CFStringRef) @"kCTRegistrationDataRate2G";
extern const CFStringRef kCTRegistrationDataRate3G = (CFStringRef) @"kCTRegistrationDataRate3G";
extern const CFStringRef kCTRegistrationDataRate4G = (CFStringRef) @"kCTRegistrationDataRate4G";

static CFStringRef constantOf(DataRate rate) {
    switch (rate) {
    case DataRate::kCTRegistrationDataRate2G:
        return kCTRegistrationDataRate2G;
    case DataRate::kCTRegistrationDataRate3G:
        return kCTRegistrationDataRate3G;
    case DataRate::kCTRegistrationDataRate4G:
        return kCTRegistrationDataRate4G;
    default:
        return nullptr;
    }
}

static DataRate rateOf(CFStringRef constant) {
    using enum DataRate;
    for (const DataRate rate :
         {kCTRegistrationDataRate2G, kCTRegistrationDataRate3G, kCTRegistrationDataRate4G})
        if (constantOf(rate) == constant)
            return rate;
    return kCTRegistrationDataRateUnknown;
}

/// An open connection, which is closed when the object is released.
@interface StandInServerConnection : NSObject {
@public
    noctara::ServerConnectionRef connection;
}
@end

@implementation StandInServerConnection

- (void)dealloc {
    if (PhoneCall phone; phone)
        phone->cellular.releaseConnection(connection);
    [super dealloc];
}

@end

BOOL CTCellularDataPlanGetIsEnabled(void) {
    PhoneCall phone;
    return phone && phone->cellular.dataPlanIsEnabled();
}

void CTCellularDataPlanSetIsEnabled(BOOL enabled) {
    if (PhoneCall phone; phone)
        phone->cellular.setDataPlanIsEnabled(enabled);
}

BOOL CTRegistrationGetCellularDataIsEnabled(void) {
    PhoneCall phone;
    return phone && phone->cellular.registrationDataIsEnabled();
}

CFStringRef CTRegistrationGetCurrentMaxAllowedDataRate(void) {
    PhoneCall phone;
    return phone ? constantOf(phone->cellular.currentMaxAllowedDataRate()) : nullptr;
}

BOOL CTRegistrationSetMaxAllowedDataRate(CFStringRef rate) {
    PhoneCall phone;
    return phone && phone->cellular.setMaxAllowedDataRate(rateOf(rate));
}

CFTypeRef CTRegistrationCopySupportedDataRates(void) {
    PhoneCall phone;
    if (!phone)
        return nullptr;
    NSMutableArray* rates = [[NSMutableArray alloc] init];
    for (const DataRate rate : phone->cellular.supportedDataRates())
        [rates addObject:(id)constantOf(rate)];
    return rates;
}

CTServerConnectionRef _CTServerConnectionCreate(CFAllocatorRef, CTServerConnectionCallback callback,
                                                void*) {
    PhoneCall phone;
    auto* opened = phone ? phone->cellular.createServerConnection(callback) : nullptr;
    if (!opened)
        return nullptr;
    StandInServerConnection* connection = [[StandInServerConnection alloc] init];
    connection->connection = opened;
    return reinterpret_cast<CTServerConnectionRef>(connection);
}
