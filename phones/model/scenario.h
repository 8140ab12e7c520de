/// A night for the simulated phone: what it is, how it stands, and what happens to it.
#pragma once

#include "platform/property_list.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace noctara {

/// Something that happens to the phone at an instant. The actions, and their values:
///
/// - posture: a string (screen-down, screen-up, in-hand, in-pocket, moving or none), or an array of
///   the reals x, y, z in g
/// - charger, airplane, wifi, bluetooth, bluetooth_connected, cellular_data, location,
///   telephony_server: a bool
/// - settings: a dictionary, merged into the settings file and announced
/// - remove_settings: an array of strings, keys taken out of the settings file; announced
/// - call: a string (none, in-call, outgoing, incoming or active)
/// - max_rate: a string (2G, 3G or 4G)
/// - disk: a string (ok, full or read-only)
/// - settings_file: a string (missing or damaged)
/// - power_message: an integer, the message's type
/// - clock: the date that the wall clock is set to
/// - button, stop: true
struct Event {
    Date at; ///< By a clock that no `clock` event has touched.
    std::string action;
    PropertyList value;
};

struct Scenario {
    Date start{1393713000};       ///< 2014-03-01T22:30:00Z
    Date end{1393747200};         ///< 9.5 hours later.
    std::string timezone = "UTC"; ///< IANA name.

    struct Phone {
        std::string bundle = "com.apple.springboard";
        std::string machine = "iPhone4,1";
        std::int32_t idiom = 0;
        double corefoundation = 793.0;
        std::vector<std::string> capabilities{"cellular-data", "wifi"};
        std::vector<std::string> rates{"2G", "3G"};
        bool telephonyManager = true;
        bool telephonyServer = true;
        bool gestalt = true;
        bool sounds = true;
        bool charger = false;
        PropertyList posture = "in-hand"; ///< As the value of the event.
        bool deviceMotion = false;
        std::int64_t idleSleep = 0; ///< Seconds; 0: never sleeps.
    } phone;

    struct Radios {
        bool airplane = false;
        bool wifi = true;
        bool wifiPowered = true;
        bool bluetooth = true;
        bool bluetoothConnected = false;
        bool cellularData = true;
        std::string maxRate = "3G";
        bool location = true;
        bool push = true;
        bool tethering = false;
        std::string call = "none"; ///< As the value of the event.
    } radios;

    std::optional<Dictionary> settings; ///< The settings file; absent: there is none yet.

    struct Application {
        std::string identifier;
        std::string name; ///< The identifier when the scenario names none.
        bool running = false;
        bool icon = true;
        bool front = false;
    };
    std::vector<Application> applications;

    struct Wake {
        std::string scheduledBy;
        Date at;
    };
    std::vector<Wake> wakes; ///< Already in the system's list.

    std::vector<Event> events; ///< In order of `at`.
};

} // namespace noctara
