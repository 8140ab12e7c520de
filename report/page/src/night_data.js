/// The data of a night in the form that the charts and the words need.
import { LocalTimes } from "./local_time.js";

/// What a cycle of the monitor came to: indices as in the data.
export const outcomes = {
    notLying: 0, lies: 1, noSample: 2, deviceMotion: 3, off: 4, outsideWindow: 5, notOnCharger: 6,
};

export const hasReading = (outcome) => outcome < outcomes.off;

/** The index of the last item whose time, by `timeOf`, is at most `time`; -1 if there is none. */
export function lastUpTo(items, time, timeOf = (item) => item) {
    let low = 0;
    let high = items.length;
    while (low < high) {
        const middle = (low + high) >> 1;
        if (timeOf(items[middle]) <= time) low = middle + 1;
        else high = middle;
    }
    return low - 1;
}

/** The value of steps, [time, value...] for each change, at a time; undefined before the first. */
export function stepAt(steps, time) {
    return steps[lastUpTo(steps, time, (step) => step[0])];
}

/** Adds up differences in milliseconds to seconds. */
export function secondsOf(differences) {
    let sum = 0;
    return Float64Array.from(differences, (difference) => (sum += difference) / 1000);
}

/** Joins the values of neighbouring cycles that are equal: [time, value] for each change. */
function joined(times, values) {
    const steps = [];
    for (let i = 0; i < times.length; ++i)
        if (i === 0 || values[i] !== steps[steps.length - 1][1]) steps.push([times[i], values[i]]);
    return steps;
}

/// Without a reading for so long, the lines of the charts have a gap. In seconds.
const longestStep = 90;

/** The columns of the charts. A gap is a row of nulls. */
function chartColumns(times, tilts, lengths) {
    const columns = [[], [], []];
    const add = (time, tilt, length) => {
        columns[0].push(time);
        columns[1].push(tilt);
        columns[2].push(length);
    };
    for (let i = 0; i < times.length; ++i) {
        if (i > 0 && times[i] - times[i - 1] > longestStep) add(times[i - 1] + 0.001, null, null);
        add(times[i], tilts[i], lengths[i]);
    }
    return columns;
}

export class NightData {
    constructor(data) {
        Object.assign(this, data);
        const { cycles } = data;
        this.local = new LocalTimes(data.localTimes);
        this.times = secondsOf(cycles.times);
        this.columns = chartColumns(this.times, cycles.tilts, cycles.lengths);
        this.readings = joined(this.times, cycles.outcomes);
        this.counts = joined(this.times, cycles.counts);
        let lines = 0;
        this.logEnds = Uint32Array.from(cycles.logged, (count) => (lines += count));
    }

    /** The cycle that was the last one at a time; -1 before the first. */
    cycleAt(time) {
        return lastUpTo(this.times, time + 0.0005);
    }

    /** The lines that the monitor logged in a cycle. */
    logOf(cycle) {
        const { texts, log } = this.cycles;
        const from = cycle > 0 ? this.logEnds[cycle - 1] : 0;
        return log.slice(from, this.logEnds[cycle]).map((index) => texts[index]);
    }

    /** What the story tells of a cycle, and of the time since the cycle before. */
    storyOf(cycle) {
        const timeOf = (line) => line[0];
        const from = cycle > 0 ? lastUpTo(this.story, this.times[cycle - 1], timeOf) + 1 : 0;
        return this.story.slice(from, lastUpTo(this.story, this.times[cycle], timeOf) + 1);
    }
}
