/// The time line of a night: its events on lanes, which the user drags.
import { fill, make } from "../../report/page/src/dom.js";

/// Steps of a handle, in seconds.
const step = 60;
const longStep = 15 * 60;

/// The lanes. Drawing on a lane adds two events with its action: the first value where the drawn part
/// begins, and the second value where it ends. A tap draws a part of `length` seconds.
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

const isLying = ({ value }) => value.includes("screen-");

/** The colour of a value. */
function lookOf({ action, value }) {
    if (action === "posture") return isLying({ value }) ? "lies" : "moves";
    if (action === "charger" || action === "call") return value === "false" || value === '"none"' ? "off" : action;
    return value === "false" ? "off" : "on";
}

/// In CSS pixels. A shorter movement of the pointer is a tap.
const shortestDrag = 3;

/** A handle for an event on a track of a lane. */
function makeHandle(event, track, handlers) {
    const handle = make("div", { class: "handle", tabindex: "0", role: "slider", "aria-valuemin": "0" });
    const moveTo = (at, isDragging) => handlers.moved(event, snapped(at, track.length()), isDragging);
    let drag;
    handle.addEventListener("pointerdown", (pointer) => {
        if (pointer.button !== 0) return;
        drag = { x: pointer.clientX, ahead: event.at - track.timeAt(pointer), hasMoved: false };
        handle.setPointerCapture(pointer.pointerId);
        handle.focus();
        pointer.preventDefault();
        pointer.stopPropagation(); // The track would begin to draw.
    });
    handle.addEventListener("pointermove", (pointer) => {
        if (!drag) return;
        drag.hasMoved ||= Math.abs(pointer.clientX - drag.x) >= shortestDrag;
        if (drag.hasMoved) moveTo(track.timeAt(pointer) + drag.ahead, true);
    });
    for (const end of ["pointerup", "pointercancel"])
        handle.addEventListener(end, () => {
            if (drag?.hasMoved) handlers.moved(event, event.at, false);
            drag = undefined;
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
 * Lets the user draw over an empty part of a lane: `isEmptyAt(at)`. `handlers.drawn(events)` adds two
 * events, which follow the pointer.
 */
function letDraw({ action, values, length: usualLength }, track, isEmptyAt, handlers) {
    const { element } = track;
    let drawing; // {from, x, events}; the events are made when the pointer has moved.
    const timeAt = (pointer) => snapped(track.timeAt(pointer), track.length());
    const drawTo = (at) => {
        const { from, events } = drawing;
        const [first, second] = events ?? values.map((value) => ({ action, value }));
        first.at = Math.min(from, at);
        second.at = Math.min(Math.max(from, at, first.at + step), track.length());
        if (!events) {
            drawing.events = [first, second];
            handlers.drawn(drawing.events);
        } else {
            for (const event of events) handlers.moved(event, event.at, true);
        }
    };
    const finish = () => {
        const last = drawing?.events?.[1];
        if (last) handlers.moved(last, last.at, false);
        drawing = undefined;
    };
    element.addEventListener("pointerdown", (pointer) => {
        const from = timeAt(pointer);
        if (pointer.button !== 0 || !isEmptyAt(from)) return;
        drawing = { from, x: pointer.clientX };
        element.setPointerCapture(pointer.pointerId);
    });
    element.addEventListener("pointermove", (pointer) => {
        if (!drawing) return;
        if (drawing.events || Math.abs(pointer.clientX - drawing.x) >= shortestDrag) drawTo(timeAt(pointer));
    });
    element.addEventListener("pointerup", () => {
        if (drawing && !drawing.events) drawTo(snapped(drawing.from + usualLength, track.length()));
        finish();
    });
    // The browser cancels the pointer when a finger scrolls the page.
    element.addEventListener("pointercancel", finish);
}

/** The hours, as marks on a track. */
function makeHours(times, width) {
    const { step: apart, marks } = times.marks(0, times.length, Math.max(2, Math.floor(width / 64)));
    return marks.map((at) => {
        const mark = make("span", { class: "hour" }, times.mark(at, apart));
        mark.style.left = `${placeOf(at, times.length)}%`;
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
        this.events = [];
        if (kind.action) letDraw(kind, this.track, (at) => this.isEmptyAt(at), handlers);
    }

    /** Whether the lane shows no bar with a colour at this time, for example no call. */
    isEmptyAt(at) {
        const last = this.events.filter((event) => event.at <= at).pop();
        return !last || (this.kind.action === "posture" ? !isLying(last) : last.value === this.kind.values[1]);
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
        this.lanes = laneKinds.map((kind) => new Lane(kind, () => this.times.length, handlers));
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
        if (this.times) fill(this.hours, makeHours(this.times, this.hours.clientWidth));
    }

    /** Shows the events of a night. An event that stays the same object keeps its handle. */
    show(events, times) {
        this.times = times;
        this.showHours();
        this.removeHandles(events);
        for (const lane of this.lanes) {
            lane.events = events.filter((event) => lane.holds(event));
            lane.hint.hidden = lane.events.length > 0;
            lane.element.hidden = !lane.kind.action && lane.events.length === 0;
            fill(lane.bars, lane.kind.action ? makeBars(lane.events, times.length) : []);
            for (const event of lane.events) this.placeHandle(event, lane);
        }
    }

    /** Removes the handles of events that are gone. The focus goes to another handle. */
    removeHandles(events) {
        for (const [event, handle] of this.handles) {
            if (events.includes(event)) continue;
            const hasFocus = document.activeElement === handle;
            handle.remove();
            this.handles.delete(event);
            if (hasFocus) [...this.handles].find(([other]) => events.includes(other))?.[1].focus();
        }
    }

    placeHandle(event, lane) {
        let handle = this.handles.get(event);
        if (!handle) {
            handle = makeHandle(event, lane.track, this.handlers);
            this.handles.set(event, handle);
            lane.track.element.append(handle);
        }
        const { length } = this.times;
        const time = this.times.words(event.at);
        handle.className = `handle ${lookOf(event)}`;
        handle.style.left = `${placeOf(event.at, length)}%`;
        handle.title = `${time} ${event.words ?? ""}`;
        handle.setAttribute("aria-label", event.words ?? lane.kind.name);
        handle.setAttribute("aria-valuemax", String(Math.max(length, event.at)));
        handle.setAttribute("aria-valuenow", String(event.at));
        handle.setAttribute("aria-valuetext", time);
    }
}
