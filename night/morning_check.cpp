#include "night/morning_check.h"

#include "monitor/noctara_thread.h"
#include "night/local_clock_text.h"

#include <fmt/format.h>

namespace noctara {

void MorningCheck::called(const Call& call) {
    if (call.operation == "performSelectorOnMainThread:withObject:waitUntilDone:") {
        if (std::get<std::string_view>(call.arguments[0]) == "setStateAirplaneMode" &&
            phone.monitor()->currentState && !expected)
            expected = phone.radios.states();
    } else if (call.operation == "notify_post" && !call.onMainThread && expected &&
               !phone.monitor()->currentState) {
        compare(call.at);
        expected.reset();
    }
}

void MorningCheck::happens(const Happening& happening) {
    if (!expected)
        return;
    const bool on = happening.value.boolValue();
    if (happening.action == "airplane")
        expected->airplane = on;
    else if (happening.action == "wifi")
        expected->wifi = on;
    else if (happening.action == "bluetooth")
        expected->bluetooth = on;
    else if (happening.action == "cellular_data")
        expected->cellularData = on;
    else if (happening.action == "max_rate")
        expected->maxRate = *happening.value.as<std::string>();
    else if (happening.action == "location")
        expected->location = on;
}

void MorningCheck::compare(Date at) {
    const auto now = phone.radios.states();
    const std::string when = timeText(phone.timeZone(), at);
    const auto compareSwitch = [&](const char* name, bool before, bool after) {
        if (before != after)
            found.push_back(fmt::format("waking at {} left {} {}; it was {} before", when, name,
                                        after ? "on" : "off", before ? "on" : "off"));
    };
    compareSwitch("airplane mode", expected->airplane, now.airplane);
    compareSwitch("Wi-Fi", expected->wifi, now.wifi);
    compareSwitch("Bluetooth", expected->bluetooth, now.bluetooth);
    compareSwitch("cellular data", expected->cellularData, now.cellularData);
    compareSwitch("location services", expected->location, now.location);
    if (expected->maxRate != now.maxRate)
        found.push_back(fmt::format("waking at {} left the data rate at {}; it was {} before", when,
                                    now.maxRate, expected->maxRate));
}

} // namespace noctara
