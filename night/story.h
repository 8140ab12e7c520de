/// The night told as a story: what happened to the phone, what the monitor made of it and why, and
/// what the phone did. Only what changes is told; a quiet hour takes no line.
#pragma once

#include "phones/model/phone_model.h"

#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace noctara {

class Story final : public PhoneObserver {
public:
    /// With `systemLog`, the lines that the monitor logs are told as well. Phone and stream must
    /// outlive the story.
    Story(const PhoneModel& watched, std::ostream& lines, bool systemLog);

    /// Begins with what moves the phone: a recording, read as the remarks say, from an instant on.
    void tellOfRecording(const std::string& name, Date from,
                         const std::vector<std::string>& remarks);

    /// Tells that there is no monitor, as the process is none that the library acts in.
    void tellOfInertness(const std::string& bundle);

    void called(const Call& call) override;
    void happens(const Happening& happening) override;

    /// Tells what is still to be told when the night is over.
    void finish();

private:
    /// Why the monitor takes no readings.
    enum class Pause { none, off, charger, window };

    void tell(Date at, const std::string& text);
    void tellLog(Date at, const std::string& logged);

    void followSettings(const Call& call);
    void finishSettings();
    void followReading(const Call& call);
    void concludeReading(Date at);
    void followSwitch(const Call& call);
    void finishSwitch(Date at);
    void followManualChange(const Call& call);
    void followPauses(Date at);
    void followPowerMessage(const Happening& happening);
    void finishNaps();

    std::string settingsInWords() const;
    Pause reasonForPause() const;

    const PhoneModel& phone;
    std::ostream& out;
    const bool withLog;
    std::optional<Date> recordingBegins;
    std::string lastDay;
    std::string lastTime;

    // A reload of the settings, told when it is over.
    std::optional<Date> reloadBegan;
    std::vector<std::string> filledIn;
    bool fileWasMissing = false;
    bool fileWasUnreadable = false;
    bool writeFailed = false;

    // Readings.
    std::optional<Acceleration> sample;
    bool sampleIsDeviceMotion = false;
    int agreeing = 0; ///< Readings in a row that speak for the other state.
    double lastReading = 0;
    Pause pause = Pause::none;
    bool suspended = false; ///< Airplane mode was changed by hand.

    // A switch of the state, told when it is over.
    std::vector<std::string> deeds;
    bool switching = false;

    // Sleeps of the whole phone; a row of them is told as one.
    struct Nap {
        Date began;
        Date ended;
        bool byWakeUp = false;
    };
    std::vector<Nap> naps;
    bool napping = false;
    bool askedToSleep = false;
    bool toldOfRefusal = false;
    std::size_t wakesListed = 0;
};

} // namespace noctara
