/// The events of a night as a list, with their times, and a form for new ones.
import { fill, freshId, make } from "../../report/page/src/dom.js";

/// What a user may add: its words, its action, and its value as in a scenario file.
const kinds = [
    ["The phone is laid down, screen down", "posture", '"screen-down"'],
    ["The phone is laid down, screen up", "posture", '"screen-up"'],
    ["The phone is taken into the hand", "posture", '"in-hand"'],
    ["The phone is put into a pocket", "posture", '"in-pocket"'],
    ["The phone is plugged in", "charger", "true"],
    ["The phone is unplugged", "charger", "false"],
    ["A call comes in", "call", '"incoming"'],
    ["A call is answered", "call", '"active"'],
    ["The call ends", "call", '"none"'],
    ["Airplane mode is switched on by hand", "airplane", "true"],
    ["Airplane mode is switched off by hand", "airplane", "false"],
    ["Wi-Fi is switched on by hand", "wifi", "true"],
    ["Wi-Fi is switched off by hand", "wifi", "false"],
    ["Bluetooth is switched on by hand", "bluetooth", "true"],
    ["Bluetooth is switched off by hand", "bluetooth", "false"],
    ["Cellular data is switched on by hand", "cellular_data", "true"],
    ["Cellular data is switched off by hand", "cellular_data", "false"],
    ["Location services are switched on by hand", "location", "true"],
    ["Location services are switched off by hand", "location", "false"],
    ["A button is pressed", "button", "true"],
];

const secondsOfDay = 86400;

/** The time of the night at which its clock shows `text`, "23:30" or "23:30:05": the nearest to `near`. */
export function timeOfClock(text, local, length, near) {
    const [hours, minutes, seconds = 0] = text.split(":").map(Number);
    const wanted = hours * 3600 + minutes * 60 + seconds;
    const found = [];
    local.spans.forEach(([from, ahead], index) => {
        const end = local.spans[index + 1]?.[0] ?? length + 1;
        const begins = Math.max(from, 0);
        const wait = (((wanted - begins - ahead) % secondsOfDay) + secondsOfDay) % secondsOfDay;
        for (let at = begins + wait; at < end && at <= length; at += secondsOfDay) found.push(at);
    });
    return found.sort((one, other) => Math.abs(one - near) - Math.abs(other - near))[0];
}

export class EventList {
    /** `handlers`: moved(event, at), removed(event), added({at, action, value}). */
    constructor(handlers) {
        this.handlers = handlers;
        this.rows = make("ul", { class: "events" });
        this.byEvent = new Map();
        this.kind = make("select", { id: freshId("kind") }, kinds.map(([words], index) => make("option", { value: String(index) }, words)));
        this.time = make("input", { id: freshId("time"), type: "time", step: "1", required: true });
        this.element = make(
            "div",
            { class: "event-list" },
            this.rows,
            make(
                "form",
                { class: "add", onsubmit: (event) => this.add(event) },
                make("label", { for: this.kind.id }, "Add"),
                this.kind,
                make("label", { for: this.time.id }, "at"),
                this.time,
                make("button", {}, "Add"),
            ),
        );
    }

    add(submission) {
        submission.preventDefault();
        const at = timeOfClock(this.time.value, this.local, this.night.length, this.night.length / 2);
        if (at === undefined) {
            this.time.setCustomValidity("The night does not reach this time.");
            this.time.reportValidity();
            this.time.oninput = () => this.time.setCustomValidity("");
            return;
        }
        const [, action, value] = kinds[this.kind.value];
        this.handlers.added({ at, action, value });
    }

    makeRow(event) {
        const time = make("input", {
            type: "time",
            step: "1",
            onchange: () => {
                const at = timeOfClock(time.value || "x", this.local, this.night.length, event.at);
                if (at === undefined) time.value = this.local.clock(event.at);
                else if (at !== event.at) this.handlers.moved(event, at);
            },
        });
        const words = make("span", { class: "words" });
        const remove = make("button", { type: "button", onclick: () => this.handlers.removed(event) }, "Remove");
        const show = () => {
            words.textContent = event.words ?? "";
            time.setAttribute("aria-label", `Time: ${words.textContent}`);
            remove.setAttribute("aria-label", `Remove: ${words.textContent}`);
            if (document.activeElement !== time) time.value = this.local.clock(event.at);
        };
        return { element: make("li", {}, time, words, remove), show };
    }

    show(night, local) {
        this.night = night;
        this.local = local;
        for (const event of this.byEvent.keys()) if (!night.events.includes(event)) this.byEvent.delete(event);
        for (const event of night.events) if (!this.byEvent.has(event)) this.byEvent.set(event, this.makeRow(event));
        const rows = night.events.map((event) => this.byEvent.get(event));
        for (const row of rows) row.show();
        // A row that moves would lose the focus.
        if (!this.rows.contains(document.activeElement) || rows.length !== this.rows.childElementCount)
            fill(this.rows, rows.map(({ element }) => element));
        if (!this.time.value) this.time.value = local.clock(night.length / 2);
    }
}
