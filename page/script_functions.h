/// The functions of the page's script. Each gets a question and returns its answer. They throw an
/// exception with what is wrong with the question.
///
/// A file of a question is in the current folder, where the script has put it.
#pragma once

#include "night/trace.h"

namespace noctara {

/// {"scenario": the text of a scenario file, by default that of the typical night}, and the changes
/// to make in it, in this order: "start", "end" and "timezone", as the options of the command;
/// "file", the name of a settings file to take the settings from; "key" and "value", a setting and
/// its text; "events", an array in which each event has "at", in seconds since the start, or
/// "local", a local time; "action", as in a scenario file; and "value", in TOML.
///
/// Returns the "scenario" with these changes, as a text, with its "start" and "end" in local time,
/// "length" in seconds, "timezone", "localTimes" as in the report without changes of the clock,
/// "settings" as settingsOf, and "events" as above, each with its "words".
Json scenarioOf(const Json& question);

/// {"scenario": the text of a scenario file}, and "advice", false to leave out the advice, for
/// which the night is played several times. Returns the data of the report (docs/report.md).
Json nightOf(const Json& question);

/// {"scenario": the text of a scenario file}. Returns the text of the trace.
Json traceOf(const Json& question);

/// {"file": the name of a recording}, and if they are known: "rate", in samples a second, "axes",
/// "ios" or "android", "unit" and "timeUnit", their symbols. Returns the data of the report, and as
/// "skipped" what was wrong with the lines that were skipped.
Json recordingOf(const Json& question);

/// {"file": the name of a settings file}. Returns "keys", in the order of the settings page,
/// "applications" and "others", in the order of the file, and "odd", sentences.
Json settingsOf(const Json& question);

/// {"file": the name of a settings file, "key": a key, "value": such as "on", or null to remove the
/// key}. Changes the file. Returns the settings after the change.
Json changedSettingsOf(const Json& question);

/// {"file": the name of a new file}. Writes the default settings into it, and returns them.
Json newSettingsOf(const Json& question);

} // namespace noctara
