/// The time line of a night: its events on lanes, which the user drags.
import { fill, make } from "../../report/page/src/dom.js";

/// Steps of a handle, in seconds.
const step = 60;
const longStep = 15 * 60;

/// What drawing over an empty part of a lane adds: an action with its values from there on and after it.
/// `length` is that of a part that is only tapped.
const laneKinds = [
    { name: "Posture", action: "posture", values: ['"screen-down"', '"in-hand"'], hint: "laid down, screen down", length: 60 * 60 },
    { name: "Charger", action: "charger", values: ["true", "false"], hint: "plugged in", length: 60 * 60 },
    { name: "Call", action: "call", values: ['"active"', '"none"'], hint: "a call", length: 10 * 60 },
    { name: "Airplane", action: "airplane", values: ["true", "false"], hint: "on, by hand", length: 30 * 60 },
    { name: "Wi-Fi", action: "wifi", values: ["false", "true"], hint: "off, by hand", length: 30 * 60 },
    { name: "Bluetooth", action: "bluetooth", values: ["false", "true"], hint: "off, by hand", length: 30 * 60 },
    { name: "Cellular", action: "cellular_data", values: ["false", "true"], hint: "off, by hand", length: 30 * 60 },
    { name: "Other" },
];

/** "screen-down", with its quotation marks, becomes "screen down". */
function valueInWords({ action, value }) {
    if (action === "charger") return value === "true" ? "plugged in" : "unplugged";
    return { true: "on", false: "off" }[value] ?? value.replaceAll('"', "").replaceAll("-", " ");
}

/** The colour of a value. */
function lookOf({ action, value }) {
    if (action === "posture") return value.includes("screen-") ? "lies" : "moves";
    if (action === "charger" || action === "call") return value === "false" || value === '"none"' ? "off" : action;
    return value === "false" ? "off" : "on";
}

/** A handle for an event on a track of a lane. */
function makeHandle(event, track, handlers) {
    const handle = make("div", { class: "handle", tabindex: "0", role: "slider", "aria-valuemin": "0" });
    const moveTo = (at, isDragging) => handlers.moved(event, snapped(at, track.length()), isDragging);
    let isDragging = false;
    handle.addEventListener("pointerdown", (pointer) => {
        if (pointer.button !== 0) return;
        isDragging = true;
        handle.setPointerCapture(pointer.pointerId);
        handle.focus();
        pointer.preventDefault();
        pointer.stopPropagation(); // The track would begin to draw.
    });
    handle.addEventListener("pointermove", (pointer) => isDragging && moveTo(track.timeAt(pointer), true));
    for (const end of ["pointerup", "pointercancel"])
        handle.addEventListener(end, () => {
            if (!isDragging) return;
            isDragging = false;
            handlers.moved(event, event.at, false);
        });
    handle.addEventListener("keydown", (key) => {
        const next = {
            ArrowLeft: event.at - step, ArrowRight: event.at + step, ArrowDown: event.at - step, ArrowUp: event.at + step,
            PageDown: event.at - longStep, PageUp: event.at + longStep, Home: 0, End: track.length(),
        }[key.key];
        if (key.key === "Delete" || key.key === "Backspace") handlers.removed(event);
        else if (next !== undefined) moveTo(next, false);
        else return;
        key.preventDefault();
    });
    return handle;
}

/** A time in the night, on a whole step. */
const snapped = (at, length) => Math.min(Math.max(Math.round(at / step) * step, 0), length);

/**
 * Lets the user draw over an empty part of a lane. `handlers.drawn(events)` adds two events; the second
 * follows the pointer.
 */
function letDraw({ action, values, length: usualLength }, track, handlers) {
    let drawing;
    const { element } = track;
    element.addEventListener("pointerdown", (pointer) => {
        if (pointer.button !== 0) return;
        drawing = { from: snapped(track.timeAt(pointer), track.length()) };
        element.setPointerCapture(pointer.pointerId);
    });
    const addUntil = (at) => {
        const [first, second] = values.map((value) => ({ at: drawing.from, action, value }));
        drawing.last = second;
        second.at = at;
        handlers.drawn([first, second]);
    };
    element.addEventListener("pointermove", (pointer) => {
        if (!drawing) return;
        const at = Math.max(snapped(track.timeAt(pointer), track.length()), drawing.from + step);
        if (drawing.last) handlers.moved(drawing.last, at, true);
        else if (track.timeAt(pointer) > drawing.from + step) addUntil(at);
    });
    element.addEventListener("pointerup", () => {
        if (!drawing) return;
        if (drawing.last) handlers.moved(drawing.last, drawing.last.at, false);
        else addUntil(snapped(drawing.from + usualLength, track.length()));
        drawing = undefined;
    });
    // The finger scrolls the page.
    element.addEventListener("pointercancel", () => (drawing = undefined));
}

/** The hours, as marks on a track. */
function makeHours(night, local, width) {
    const { step: apart, marks } = local.marks(0, night.length, Math.max(2, Math.floor(width / 64)));
    return marks.map((at) => {
        const mark = make("span", { class: "hour" }, local.mark(at, apart));
        mark.style.left = `${(100 * at) / night.length}%`;
        return mark;
    });
}

/** The place of a time on a track, in percent. An event after the end stands at the end. */
const placeOf = (at, length) => 100 * Math.min(at / length, 1);

/** The bars of a lane in which values last: from each event to the next. */
function makeBars(events, length) {
    return events.map((event, index) => {
        const until = events[index + 1]?.at ?? length;
        const bar = make("span", { class: `bar ${lookOf(event)}` }, valueInWords(event));
        const [left, right] = [placeOf(event.at, length), placeOf(until, length)];
        bar.style.left = `${left}%`;
        bar.style.width = `${right - left}%`;
        return bar;
    });
}

class Lane {
    /** `length()` is that of the night. */
    constructor(kind, length, handlers) {
        this.kind = kind;
        this.bars = make("div", { class: "bars", "aria-hidden": "true" });
        this.hint = make("span", { class: "draw-hint", "aria-hidden": "true" }, `Draw here: ${kind.hint}`);
        this.track = {
            element: make("div", { class: "track" }, this.hint, this.bars),
            length,
            timeAt: ({ clientX }) => {
                const { left, width } = this.track.element.getBoundingClientRect();
                return ((clientX - left) / width) * length();
            },
        };
        this.element = make("div", { class: "lane" }, make("span", { class: "lane-name" }, kind.name), this.track.element);
        if (kind.action) letDraw(kind, this.track, handlers);
    }

    holds({ action }) {
        const { action: own } = this.kind;
        return own ? action === own : !laneKinds.some(({ action: other }) => other === action);
    }
}

export class Timeline {
    /** `handlers`: moved(event, at, isDragging), removed(event), drawn([event, event]). */
    constructor(handlers) {
        this.handlers = handlers;
        this.hours = make("div", { class: "track hours", "aria-hidden": "true" });
        this.lanes = laneKinds.map((kind) => new Lane(kind, () => this.night.length, handlers));
        this.handles = new Map();
        this.element = make(
            "div",
            { class: "timeline", role: "group", "aria-label": "Time line of the night" },
            make("div", { class: "lane" }, make("span", { class: "lane-name" }), this.hours),
            this.lanes.map(({ element }) => element),
        );
        new ResizeObserver(() => this.showHours()).observe(this.hours);
    }

    showHours() {
        if (this.night) fill(this.hours, makeHours(this.night, this.local, this.hours.clientWidth));
    }

    /** Shows a night: {length, events}. An event that stays the same object keeps its handle. */
    show(night, local) {
        this.night = night;
        this.local = local;
        this.showHours();
        for (const [event, handle] of this.handles) {
            if (night.events.includes(event)) continue;
            handle.remove();
            this.handles.delete(event);
        }
        for (const lane of this.lanes) {
            const events = night.events.filter((event) => lane.holds(event));
            lane.hint.hidden = events.length > 0;
            lane.element.hidden = !lane.kind.action && events.length === 0;
            fill(lane.bars, lane.kind.action ? makeBars(events, night.length) : []);
            for (const event of events) this.placeHandle(event, lane);
        }
    }

    placeHandle(event, lane) {
        let handle = this.handles.get(event);
        if (!handle) {
            handle = makeHandle(event, lane.track, this.handlers);
            this.handles.set(event, handle);
            lane.track.element.append(handle);
        }
        const clock = this.local.clock(event.at);
        handle.className = `handle ${lookOf(event)}`;
        handle.style.left = `${placeOf(event.at, this.night.length)}%`;
        handle.title = `${clock} ${event.words ?? ""}`;
        handle.setAttribute("aria-label", event.words ?? lane.kind.name);
        handle.setAttribute("aria-valuemax", String(this.night.length));
        handle.setAttribute("aria-valuenow", String(event.at));
        handle.setAttribute("aria-valuetext", clock);
    }
}
