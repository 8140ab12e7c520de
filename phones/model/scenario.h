/// A night for the simulated phone: the phone, its state at the start, and the events.
#pragma once

#include "phones/model/event.h"
#include "platform/property_list.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace noctara {

struct ScheduledEvent {
    Date at; ///< On the monotonic clock, which a ClockChange does not move.
    Event event;
};

/// The bundle of the process in which the library is at work.
inline constexpr const char* springBoardBundle = "com.apple.springboard";

struct Scenario {
    Date start{1393713000};       ///< 2014-03-01T22:30:00Z
    Date end{1393747200};         ///< 9.5 hours later.
    std::string timezone = "UTC"; ///< IANA name.

    struct Phone {
        std::string bundle = springBoardBundle;
        std::string machine = "iPhone4,1";
        std::int32_t idiom = 0;
        double corefoundation = 793.0;
        std::vector<std::string> capabilities{"cellular-data", "wifi"};
        std::vector<DataRate> rates{DataRate::kCTRegistrationDataRate2G,
                                    DataRate::kCTRegistrationDataRate3G};
        bool telephonyManager = true;
        bool telephonyServer = true;
        bool gestalt = true;
        bool sounds = true;
        bool charger = false;
        Posture posture = NamedPosture::InHand;
        bool deviceMotion = false;
        std::int64_t idleSleep = 0; ///< Seconds without activity before idle sleep. 0: never.
    } phone;

    struct Radios {
        bool airplane = false;
        bool wifi = true;
        bool wifiPowered = true;
        bool bluetooth = true;
        bool bluetoothConnected = false;
        bool cellularData = true;
        DataRate maxRate = DataRate::kCTRegistrationDataRate3G;
        bool location = true;
        bool push = true;
        bool tethering = false;
        CallState call = CallState::none;
    } radios;

    std::optional<Dictionary> settings; ///< The settings file. Absent: there is none yet.

    struct Application {
        std::string identifier;
        std::string name; ///< The identifier if the scenario gives no name.
        bool running = false;
        bool icon = true;
        bool front = false;
    };
    std::vector<Application> applications;

    struct Wake {
        std::string scheduledBy;
        Date at;
    };
    std::vector<Wake> wakes; ///< In the system's list at the start.

    std::vector<ScheduledEvent> events; ///< In order of `at`.
};

} // namespace noctara
