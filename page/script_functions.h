/// The functions that the page's script calls. Each takes a question and returns the answer. If the
/// question is wrong, it throws an exception whose message says what is wrong.
///
/// A question names a file in the current folder. The script puts the file there.
#pragma once

#include "night/trace.h"

namespace noctara {

/// Changes a scenario. "scenario" is the text of a scenario file. If it is missing, the typical
/// night is changed. The other members are the changes. They are made in this order:
///
/// - "start", "end" and "timezone" have the values of the command's options.
/// - "file" is the name of a settings file. Its settings become those of the scenario.
/// - "key" and "value" are a setting and its value, such as "on".
/// - "events" replaces the events. Each has "action", as in a scenario file, and "value", in TOML.
///   It also has "at", in seconds since the start, or "local", a local time.
///
/// Returns the changed scenario: its text as "scenario", "start" and "end" in local time, "length"
/// in seconds, "timezone", "localTimes" as in the report, "settings" as in settingsOf, and
/// "events", each with "at", "action", "value" and "words".
Json scenarioOf(const Json& question);

/// {"scenario": the text of a scenario file}. Returns the data of the report (docs/report.md). The
/// night is played several times to find the advice. "advice": false leaves the advice out.
Json nightOf(const Json& question);

/// {"scenario": the text of a scenario file}. Returns the text of the trace.
Json traceOf(const Json& question);

/// {"file": the name of a recording}. May have "rate", in samples a second, "axes", which is "ios"
/// or "android", and the symbols "unit" and "timeUnit". Returns the data of the report. "skipped"
/// says what was wrong with the lines that were skipped.
Json recordingOf(const Json& question);

/// {"file": the name of a settings file}. Returns its settings as settingsForPage does.
Json settingsOf(const Json& question);

/// {"file": the name of a settings file, "key": a key, "value": such as "on", or null to remove the
/// key}. Changes the file. Returns the settings after the change.
Json changedSettingsOf(const Json& question);

/// {"file": the name of a new file}. Writes the default settings into it, and returns them.
Json newSettingsOf(const Json& question);

} // namespace noctara
