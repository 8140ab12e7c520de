/// The time line of a night: its events on lanes, which the user drags.
import { fill, make } from "../../report/page/src/dom.js";

/// Steps of a handle, in seconds.
const step = 60;
const longStep = 15 * 60;

const laneOfAction = {
    posture: "Posture", charger: "Charger", call: "Calls",
    airplane: "Radios", wifi: "Radios", bluetooth: "Radios", bluetooth_connected: "Radios",
    cellular_data: "Radios", max_rate: "Radios", location: "Radios",
};

/// In these lanes a value lasts until the next event.
const lasting = ["Posture", "Charger", "Calls"];

/** "screen-down", with its quotation marks, becomes "screen down". */
const valueInWords = ({ action, value }) =>
    action === "charger" ? (value === "true" ? "plugged in" : "unplugged") : value.replaceAll('"', "").replaceAll("-", " ");

/** What a value of a lane means for the colour of its bar. */
function lookOf({ action, value }) {
    if (action === "posture") return value.includes("screen-") ? "lies" : "moves";
    return value === "false" || value === '"none"' ? "off" : action;
}

/**
 * A handle for an event. `handlers.moved(event, at, isDragging)` moves it, `handlers.removed(event)`
 * removes it. `length()` is that of the night.
 */
function makeHandle(event, length, handlers) {
    const handle = make("div", {
        class: `handle ${lookOf(event)}`,
        tabindex: "0",
        role: "slider",
        "aria-label": event.words,
        "aria-valuemin": "0",
    });
    const moveTo = (at, isDragging) => {
        const snapped = Math.round(at / step) * step;
        handlers.moved(event, Math.min(Math.max(snapped, 0), length()), isDragging);
    };
    let isDragging = false;
    const timeAt = ({ clientX }) => {
        const { left, width } = handle.parentElement.getBoundingClientRect();
        return ((clientX - left) / width) * length();
    };
    handle.addEventListener("pointerdown", (pointer) => {
        if (pointer.button !== 0) return;
        isDragging = true;
        handle.setPointerCapture(pointer.pointerId);
        handle.focus();
        pointer.preventDefault();
    });
    handle.addEventListener("pointermove", (pointer) => isDragging && moveTo(timeAt(pointer), true));
    for (const end of ["pointerup", "pointercancel"])
        handle.addEventListener(end, () => {
            if (!isDragging) return;
            isDragging = false;
            handlers.moved(event, event.at, false);
        });
    handle.addEventListener("keydown", (key) => {
        const next = {
            ArrowLeft: event.at - step, ArrowRight: event.at + step, ArrowDown: event.at - step, ArrowUp: event.at + step,
            PageDown: event.at - longStep, PageUp: event.at + longStep, Home: 0, End: length(),
        }[key.key];
        if (key.key === "Delete" || key.key === "Backspace") handlers.removed(event);
        else if (next !== undefined) moveTo(next, false);
        else return;
        key.preventDefault();
    });
    return handle;
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

/** The bars of a lane in which values last: from each event to the next. */
function makeBars(events, length) {
    return events.map((event, index) => {
        const until = events[index + 1]?.at ?? length;
        const bar = make("span", { class: `bar ${lookOf(event)}` }, valueInWords(event));
        bar.style.left = `${(100 * event.at) / length}%`;
        bar.style.width = `${(100 * Math.max(until - event.at, 0)) / length}%`;
        return bar;
    });
}

class Lane {
    constructor(name) {
        this.name = name;
        this.bars = make("div", { class: "bars", "aria-hidden": "true" });
        this.track = make("div", { class: "track" }, this.bars);
        this.element = make("div", { class: "lane" }, make("span", { class: "lane-name" }, name), this.track);
    }
}

export class Timeline {
    constructor(handlers) {
        this.handlers = handlers;
        this.hours = make("div", { class: "track hours", "aria-hidden": "true" });
        this.lanes = ["Posture", "Charger", "Calls", "Radios", "Other"].map((name) => new Lane(name));
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
            const events = night.events.filter(({ action }) => (laneOfAction[action] ?? "Other") === lane.name);
            lane.element.hidden = lane.name === "Other" && events.length === 0;
            fill(lane.bars, lasting.includes(lane.name) ? makeBars(events, night.length) : []);
            for (const event of events) this.placeHandle(event, lane);
        }
    }

    placeHandle(event, lane) {
        let handle = this.handles.get(event);
        if (!handle) {
            handle = makeHandle(event, () => this.night.length, this.handlers);
            this.handles.set(event, handle);
            lane.track.append(handle);
        }
        handle.style.left = `${(100 * event.at) / this.night.length}%`;
        handle.setAttribute("aria-valuemax", String(this.night.length));
        handle.setAttribute("aria-valuenow", String(event.at));
        handle.setAttribute("aria-valuetext", this.local.clock(event.at));
        handle.title = `${this.local.clock(event.at)} ${event.words}`;
    }
}
