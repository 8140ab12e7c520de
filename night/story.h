/// Writes the night as a story: what happened to the phone, what the monitor decided and why, and
/// what it did. The story has lines only for changes.
#pragma once

#include "monitor/decisions.h"
#include "night/elapsed_time.h"
#include "night/wake_ups.h"
#include "phones/model/local_time.h"
#include "phones/model/phone_observer.h"
#include "phones/model/scenario.h"

#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace noctara {

class Story {
public:
    /// With `systemLog` the story includes the lines that the monitor logs. The stream must outlive
    /// the story.
    Story(const Scenario& scenario, std::ostream& lines, bool systemLog);

    /// Writes that a recording provides the accelerometer samples from `from` on, and the remarks
    /// about the recording.
    void tellOfRecording(const std::string& name, Date from,
                         const std::vector<std::string>& remarks);

    /// Writes that there is no monitor, because the library does nothing in this process.
    void tellOfInertness();

    void called(const Call& call);
    void happens(const Happening& happening);
    void decided(Date at, const Decision& decision);

    /// Writes what is left to tell. Call it at the end of the night.
    void finish();

    /// If set, it is called with each line of the story and its time by the wall clock.
    std::function<void(Date, const std::string&)> onLine;

private:
    struct Telling;

    void tell(Date at, const std::string& text);
    void tellLog(Date at, const std::string& logged);
    void tellSettings(Date at);
    void tellReading(Date at, const ReadingCounted& counted);
    void tellSwitch(Date at, bool inSleepState);
    void tellPause(Date at);

    void followSound(const Call& call);
    void followSwitch(const Call& call);
    void followPowerMessage(Date at, std::uint32_t type);
    void finishNaps();

    const Scenario night;
    const TimeZone zone;
    std::ostream& out;
    const bool withLog;
    ElapsedTime elapsed;
    std::optional<Date> recordingBegins;
    std::string lastDay;
    std::string lastTime;

    // A load of the settings. It is told when it has ended.
    std::optional<SettingsFileMade> fileMade;
    bool fileWasUnreadable = false;
    bool fillingInFailed = false;
    std::vector<std::string> filledIn;
    std::optional<Dictionary> file; ///< The settings file. Absent if it cannot be read.
    Settings settings = {};
    std::vector<std::string> applications; ///< On the phone. Empty if they are not known.

    // Readings.
    std::optional<Reading> reading;             ///< The last one.
    int inARow = 0;                             ///< Readings that disagree with the state.
    double lastReading;                         ///< On the monotonic clock.
    std::optional<NoReading::Reason> noReading; ///< Of the last cycle, if it took no reading.
    std::optional<NoReading::Reason> pause;     ///< The reason that was told last.
    bool suspended = false;                     ///< Airplane mode was changed by hand.

    // A change of the state. It is told when it has ended.
    std::vector<std::string> deeds;
    bool switching = false;
    std::int64_t airplaneModeSound = 0;

    // Idle sleeps of the phone. Consecutive ones are told in one line.
    struct Nap {
        Date began;
        Date ended;
        bool byWakeUp = false;
    };
    std::vector<Nap> naps;
    bool napping = false;
    bool askedToSleep = false;
    bool toldOfRefusal = false;
    WakeUps wakeUps;
};

} // namespace noctara
