/// Converts times of a night to local times and back, for the texts and the fields of the page.
import { LocalTimes } from "../../report/page/src/local_time.js";

const secondsOfDay = 86400;

/** "2014-03-01T22:30:00" as seconds in which each day has the same length. */
export const localSeconds = (text) => Date.parse(`${text.length === 16 ? `${text}:00` : text}Z`) / 1000;

/** The reverse of localSeconds, with seconds. */
export const localText = (seconds) => new Date(seconds * 1000).toISOString().slice(0, 19);

export class NightTimes extends LocalTimes {
    /** The argument is a night, as scenarioOf in script_functions.h returns it. */
    constructor({ localTimes, length }) {
        super(localTimes);
        this.length = length;
        this.hasDays = length > secondsOfDay;
        /** The type of a field for a time. */
        this.fieldType = this.hasDays ? "datetime-local" : "time";
    }

    /** "23:30:05", with the day if the night has more than one. */
    words(at) {
        return this.hasDays ? `${this.shortDay(at)} ${this.clock(at)}` : this.clock(at);
    }

    localSecondsAt(at) {
        return at + this.spanAt(at)[1];
    }

    /** What a field of `fieldType` shows. */
    field(at) {
        return this.hasDays ? localText(this.localSecondsAt(at)) : this.clock(at);
    }

    /** The time that a field shows: of several, the nearest to `near`. Undefined if the night has none. */
    ofField(value, near) {
        const latest = Math.max(this.length, near);
        const found = [];
        this.spans.forEach(([from, ahead], index) => {
            const begins = Math.max(from, 0);
            const end = Math.min(this.spans[index + 1]?.[0] ?? Infinity, latest + 1);
            if (this.hasDays) {
                const at = localSeconds(value) - ahead;
                if (at >= begins && at < end) found.push(at);
                return;
            }
            const [hours, minutes, seconds = 0] = value.split(":").map(Number);
            const wait = hours * 3600 + minutes * 60 + seconds - begins - ahead;
            const first = begins + (((wait % secondsOfDay) + secondsOfDay) % secondsOfDay);
            for (let at = first; at < end; at += secondsOfDay) found.push(at);
        });
        return found.sort((one, other) => Math.abs(one - near) - Math.abs(other - near))[0];
    }
}
