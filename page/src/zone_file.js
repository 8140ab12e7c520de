/// The time zones of the browser, in the format of the zoneinfo database (RFC 8536).

/// The first and the last instant that a file tells of, in seconds. Outside them the offset is the one
/// of the nearest instant.
const first = 0;
const last = Date.UTC(2100, 0, 1) / 1000;

/// Shorter than any time between two changes of an offset since 1970.
const step = 14 * 24 * 3600;

/** A function from an instant in seconds to the offset from UTC in seconds. Null for no zone. */
function offsets(zone) {
    let format;
    try {
        format = new Intl.DateTimeFormat("en-US-u-ca-gregory-nu-latn", {
            timeZone: zone,
            hourCycle: "h23",
            year: "numeric",
            month: "numeric",
            day: "numeric",
            hour: "numeric",
            minute: "numeric",
            second: "numeric",
        });
    } catch {
        return null;
    }
    return (seconds) => {
        const local = {};
        for (const { type, value } of format.formatToParts(seconds * 1000)) local[type] = +value;
        const { year, month, day, hour, minute, second } = local;
        return Date.UTC(year, month - 1, day, hour, minute, second) / 1000 - seconds;
    };
}

/** The first instant after `from`, up to `to`, with the offset of `to`. */
function change(offsetAt, from, to) {
    const after = offsetAt(to);
    while (to - from > 1) {
        const middle = Math.floor((from + to) / 2);
        if (offsetAt(middle) === after) to = middle;
        else from = middle;
    }
    return to;
}

function changes(offsetAt) {
    const found = [];
    let before = offsetAt(first);
    for (let at = first + step; at <= last; at += step) {
        const offset = offsetAt(at);
        if (offset !== before) found.push({ at: change(offsetAt, at - step, at), offset });
        before = offset;
    }
    return found;
}

function header(times, types, letters) {
    const view = new DataView(new ArrayBuffer(44));
    [..."TZif2"].forEach((letter, i) => view.setUint8(i, letter.charCodeAt(0)));
    [0, 0, 0, times, types, letters].forEach((count, i) => view.setUint32(20 + 4 * i, count));
    return new Uint8Array(view.buffer);
}

/** "UTC+1", "UTC-3:30" */
function abbreviation(offset) {
    const minutes = Math.round(Math.abs(offset) / 60);
    const rest = minutes % 60 ? `:${String(minutes % 60).padStart(2, "0")}` : "";
    return `UTC${offset < 0 ? "-" : "+"}${Math.floor(minutes / 60)}${rest}`;
}

/** The bytes of the zone's file. Null if the browser has no zone of this name. */
export function zoneFile(zone) {
    const offsetAt = offsets(zone);
    if (!offsetAt) return null;
    const times = changes(offsetAt);
    const types = [...new Set([offsetAt(first), ...times.map(({ offset }) => offset)])];
    const names = types.map(abbreviation);
    const letters = names.join("\0") + "\0";

    const body = new DataView(new ArrayBuffer(9 * times.length + 6 * types.length));
    times.forEach(({ at, offset }, i) => {
        body.setBigInt64(8 * i, BigInt(at));
        body.setUint8(8 * times.length + i, types.indexOf(offset));
    });
    let name = 0;
    types.forEach((offset, i) => {
        const place = 9 * times.length + 6 * i;
        body.setInt32(place, offset);
        body.setUint8(place + 5, name);
        name += names[i].length + 1;
    });
    // The format begins with an older one, which readers skip and which may be empty.
    const parts = [
        header(0, 0, 0),
        header(times.length, types.length, letters.length),
        new Uint8Array(body.buffer),
        new TextEncoder().encode(letters + "\n\n"),
    ];
    const bytes = new Uint8Array(parts.reduce((sum, part) => sum + part.length, 0));
    let place = 0;
    for (const part of parts) {
        bytes.set(part, place);
        place += part.length;
    }
    return bytes;
}
