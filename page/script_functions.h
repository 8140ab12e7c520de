/// The functions that the page's script calls. Each takes a question and returns the answer. If the
/// question is wrong, it throws an exception whose message says what is wrong.
///
/// A question is a JSON object. Files that it names are in the current folder, where the script
/// puts them.
#pragma once

#include "night/trace.h"

namespace noctara {

/// Returns a changed scenario. Each member of the question is optional. The changes are made in the
/// order of this list:
///
/// - "scenario": the text of the scenario file to change. The default is the typical night.
/// - "start", "end", "timezone": values of the command's options of these names.
/// - "file": the name of a settings file. The scenario gets its settings.
/// - "key", "value": a setting, and its value as the command takes it, such as "on".
/// - "events": an array. It replaces all events.
///
/// An event has three members:
///
/// - "action": the key of the event in a scenario file, such as "charger".
/// - "value": its value in TOML, such as "true".
/// - "at" or "local": the time, in seconds since the start or as a local time.
///
/// The answer has these members:
///
/// - "scenario": the text of the changed scenario file.
/// - "start", "end": local times.
/// - "length": the length of the night in seconds.
/// - "timezone", and "localTimes" as in the report.
/// - "settings": as settingsOf returns them.
/// - "events": each with "at", "action", "value", and "words", a sentence.
Json scenarioOf(const Json& question);

/// Plays the night of "scenario", the text of a scenario file. Returns the data of the report
/// (docs/report.md). The advice takes longest, because several nights are played to find it. If
/// "advice" is false, there is none.
Json nightOf(const Json& question);

/// Plays the night of "scenario", the text of a scenario file. Returns the text of the trace.
Json traceOf(const Json& question);

/// Reads the recording in the file "file". Optional members say what is known about it:
///
/// - "rate": samples a second.
/// - "axes": "ios" or "android".
/// - "unit", "timeUnit": the symbols of the units.
///
/// Returns the data of the report, and "skipped", an array. It says what was wrong with the lines
/// that were skipped.
Json recordingOf(const Json& question);

/// Reads the settings file "file". Returns its settings as settingsForPage does.
Json settingsOf(const Json& question);

/// Changes the settings file "file": the setting "key" gets the value "value", such as "on". If
/// "value" is null, the key is removed. Returns the settings after the change.
Json changedSettingsOf(const Json& question);

/// Writes the default settings into the new file "file". Returns them.
Json newSettingsOf(const Json& question);

} // namespace noctara
