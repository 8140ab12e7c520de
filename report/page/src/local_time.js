/// Local times of the phone. A time of the night is a number of seconds since its start.

const twoDigits = (number) => String(number).padStart(2, "0");
const days = ["Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"];
const months = [
    "January", "February", "March", "April", "May", "June", "July", "August", "September",
    "October", "November", "December",
];

/// The distances between the marks of a time axis.
const steps = [
    1, 2, 5, 10, 15, 30, 60, 120, 300, 600, 900, 1800, 3600, 7200, 10800, 21600, 43200, 86400,
    172800, 604800,
];

export class LocalTimes {
    /** `spans`: [from, seconds to add for local time in seconds since 1970, abbreviation]. */
    constructor(spans) {
        this.spans = spans;
    }

    spanAt(time) {
        let index = this.spans.length - 1;
        while (index > 0 && this.spans[index][0] > time) --index;
        return this.spans[index];
    }

    /** The local time as a Date whose UTC parts are the local ones. */
    at(time) {
        return new Date(Math.floor(time + this.spanAt(time)[1] + 1e-6) * 1000);
    }

    zone(time) {
        return this.spanAt(time)[2];
    }

    /** "23:30:05" */
    clock(time) {
        const local = this.at(time);
        return [local.getUTCHours(), local.getUTCMinutes(), local.getUTCSeconds()]
            .map(twoDigits)
            .join(":");
    }

    /** "23:30" */
    hours(time) {
        return this.clock(time).slice(0, 5);
    }

    /** "Saturday, 1 March 2014" */
    day(time) {
        const local = this.at(time);
        const month = months[local.getUTCMonth()];
        return `${days[local.getUTCDay()]}, ${local.getUTCDate()} ${month} ${local.getUTCFullYear()}`;
    }

    /** "1 Mar" */
    shortDay(time) {
        const local = this.at(time);
        return `${local.getUTCDate()} ${months[local.getUTCMonth()].slice(0, 3)}`;
    }

    /** Where a time axis has its marks: round local times, at most `most` of them. */
    marks(from, to, most) {
        const step = steps.find((one) => (to - from) / one <= most) ?? steps[steps.length - 1];
        const found = [];
        this.spans.forEach(([begins, ahead], index) => {
            const first = Math.max(from, index === 0 ? -Infinity : begins);
            const end = Math.min(to, this.spans[index + 1]?.[0] ?? Infinity);
            for (let at = Math.ceil((first + ahead) / step) * step - ahead; at <= end; at += step)
                if (found.length === 0 || at - found[found.length - 1] > step / 2) found.push(at);
        });
        return { step, marks: found };
    }

    /** The text of a mark: a time, or the day where a new one begins. */
    mark(time, step) {
        const clock = this.clock(time);
        if (step >= 86400 || clock === "00:00:00") return this.shortDay(time);
        return step < 60 ? clock : clock.slice(0, 5);
    }
}

/** Times since the start of a recording. */
export class ElapsedTimes extends LocalTimes {
    constructor() {
        super([[0, 0, ""]]);
    }

    mark(time) {
        return time < 3600 ? this.clock(time).slice(3) : this.clock(time);
    }
}
