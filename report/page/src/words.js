/// What the monitor knew in a cycle and why it did what it did, in words.
import { hasReading, outcomes, stepAt } from "./night_data.js";

const readingsForChange = 3;
const shortestAtRest = 0.9;
const longestAtRest = 1.1;

/** A duration in the form of the story's summary. */
export function duration(seconds) {
    const whole = Math.round(seconds);
    const twoDigits = (number) => String(number).padStart(2, "0");
    if (whole >= 3600) return `${Math.floor(whole / 3600)} h ${twoDigits(Math.floor(whole / 60) % 60)} min`;
    if (whole >= 60) return `${Math.floor(whole / 60)} min ${twoDigits(whole % 60)} s`;
    return `${whole} s`;
}

function passing(tolerance) {
    if (tolerance === null) return "any tilt passes";
    if (tolerance < 0) return "no tilt passes";
    return `less than ${tolerance.toFixed(1)}° passes`;
}

const stateSentences = {
    watching: "The monitor waits for the phone to be put down.",
    quiet: "The phone is quiet.",
    suspended: "Airplane mode was changed by hand: monitoring is suspended.",
    "outside the window": "No readings: it is outside the window.",
    "not on the charger": "No readings: the phone is not on the charger.",
    off: "No readings: monitoring is off.",
};

export function stateInWords(night, time) {
    const step = stepAt(night.lanes.state, time);
    const since = step[0] > 0 ? ` Since ${night.local.clock(step[0])}.` : "";
    const quiet = stepAt(night.lanes.quiet ?? [], time)?.[1] ?? false;
    const also = quiet && step[1] !== "quiet" ? " The phone is quiet." : "";
    return stateSentences[step[1]] + also + since;
}

export function readingInWords(night, cycle) {
    const { tilts, lengths } = night.cycles;
    const outcome = night.cycles.outcomes[cycle];
    if (outcome === outcomes.noSample)
        return "The accelerometer delivered nothing, which never counts as lying.";
    if (outcome === outcomes.deviceMotion)
        return "Device motion was delivered, which never counts as lying.";
    const [, tolerance, screenDown] = stepAt(night.tolerances, night.times[cycle]);
    const posture = screenDown ? "screen down" : "screen up";
    const tilt = `${tilts[cycle].toFixed(1)}° off (${passing(tolerance)})`;
    const length = `${lengths[cycle].toFixed(2)} g (${shortestAtRest} to ${longestAtRest} g passes)`;
    return outcome === outcomes.lies
        ? `Lying ${posture}: ${tilt}, ${length}.`
        : `Not lying ${posture}: ${tilt}, ${length}.`;
}

export function countInWords(night, cycle) {
    const outcome = night.cycles.outcomes[cycle];
    const count = night.cycles.counts[cycle];
    const before = cycle > 0 ? night.cycles.counts[cycle - 1] % readingsForChange : 0;
    const lies = outcome === outcomes.lies;
    if (count === readingsForChange)
        return lies
            ? "Reading 3 of 3 in a row: the phone becomes quiet."
            : "Reading 3 of 3 in a row: the phone is back.";
    if (count > 0)
        return `Reading ${count} of 3 in a row. The third ${lies ? "makes the phone quiet" : "ends the quiet state"}.`;
    if (before > 0)
        return lies
            ? "Lying again: the count goes back to 0, and the phone stays quiet."
            : "Not lying any more: the countdown is dropped.";
    return lies
        ? "The phone is quiet and lies: nothing to count."
        : "The phone is in use and does not lie: nothing to count.";
}

function windowInWords(settings, state) {
    if (!settings.timeLimit) return null;
    const window = `The window is ${settings.startHour}:00 to ${settings.stopHour}:00`;
    if (state === "outside the window") return `${window}: outside.`;
    if (state === "quiet") return `${window}. It does not matter while the phone is quiet.`;
    return state === "watching" ? `${window}: inside.` : `${window}.`;
}

function chargerInWords(settings, state, plugged) {
    if (!settings.onChargerOnly) return null;
    if (plugged) return "Readings need the charger: it is plugged in.";
    return state === "watching" || state === "quiet"
        ? "Readings need the charger. It was unplugged while the phone was quiet, so they go on."
        : "Readings need the charger: it is not plugged in.";
}

/** The state in which a cycle began. */
function stateBefore(night, cycle) {
    if (night.cycles.counts[cycle] === readingsForChange)
        return night.cycles.outcomes[cycle] === outcomes.lies ? "watching" : "quiet";
    return stepAt(night.lanes.state, night.times[cycle])[1];
}

/** Why the monitor did what it did in a cycle: [name, text] for each thing that it knew. */
export function explained(night, cycle) {
    const time = night.times[cycle];
    const settings = stepAt(night.settings, time)?.[1];
    const state = stateBefore(night, cycle);
    const plugged = stepAt(night.lanes.charger, time)[1];
    const found = [["State", stateInWords(night, time)]];
    if (hasReading(night.cycles.outcomes[cycle]))
        found.push(["Reading", readingInWords(night, cycle)], ["Count", countInWords(night, cycle)]);
    if (settings) {
        found.push(
            ["Window", windowInWords(settings, state)],
            ["Charger", chargerInWords(settings, state, plugged)],
            ["Settings", `A reading every ${settings.interval} s, Sensitivity ${settings.sensitivity}.`],
        );
    }
    return found.filter(([, text]) => text !== null);
}
