#include "night/deed_words.h"

#include <fmt/format.h>

namespace noctara {

namespace {

std::string_view text(const Call& call) {
    return std::get<std::string_view>(call.arguments[0]);
}

std::string switched(const char* radio, const Call& call) {
    return fmt::format("switches {} {}", radio, std::get<bool>(call.arguments[0]) ? "on" : "off");
}

bool answeredNo(const Call& call) {
    return call.result && !std::get<bool>(*call.result);
}

} // namespace

std::string deedInWords(const Call& call) {
    switch (call.operation) {
    case Operation::setIsInAirplaneMode:
        return switched("airplane mode", call);
    case Operation::setWiFiEnabled:
        return switched("Wi-Fi", call);
    case Operation::setPowered:
    case Operation::setEnabled:
        return switched("Bluetooth", call);
    case Operation::connected:
        return answeredNo(call) ? "" : "leaves Bluetooth on, as a device is connected";
    case Operation::CTCellularDataPlanSetIsEnabled:
        return switched("cellular data", call);
    case Operation::CTRegistrationSetMaxAllowedDataRate:
        return fmt::format("allows data rates up to {}", text(call));
    case Operation::setLocationServicesEnabled:
        return switched("location services", call);
    case Operation::launch:
        return fmt::format("launches {}", text(call));
    case Operation::activate:
        return fmt::format("brings up {}", text(call));
    case Operation::kill:
        return fmt::format("quits {}", text(call));
    case Operation::leafIconForIdentifier:
        return answeredNo(call) ? fmt::format("cannot launch {}, which has no icon", text(call))
                                : "";
    case Operation::sharedTelephonyManager:
        return answeredNo(call) ? "finds no telephony manager and touches no radio" : "";
    default:
        return "";
    }
}

} // namespace noctara
