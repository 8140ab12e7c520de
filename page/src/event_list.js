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

const notInNight = "The night does not reach this time.";

/** Shows at a field what is wrong with its value, until the value is changed. */
function refuse(field, sentence) {
    field.setCustomValidity(sentence);
    field.reportValidity();
    field.addEventListener("input", () => field.setCustomValidity(""), { once: true });
}

export class EventList {
    /** `handlers`: moved(event, at), removed(event), added({at, action, value}). */
    constructor(handlers) {
        this.handlers = handlers;
        this.rows = make("ul", { class: "events" });
        this.byEvent = new Map();
        this.kind = make("select", { id: freshId("kind") }, kinds.map(([words], index) => make("option", { value: String(index) }, words)));
        this.time = make("input", { id: freshId("time"), step: "1", required: true });
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
        const at = this.times.ofField(this.time.value, this.times.length / 2);
        if (at === undefined) {
            refuse(this.time, notInNight);
            return;
        }
        const [, action, value] = kinds[this.kind.value];
        this.handlers.added({ at, action, value });
    }

    makeRow(event) {
        const time = make("input", {
            step: "1",
            onchange: () => {
                const at = time.value ? this.times.ofField(time.value, event.at) : undefined;
                if (at === undefined) refuse(time, notInNight);
                else if (at !== event.at) this.handlers.moved(event, at);
            },
            onblur: () => row.show(),
        });
        const words = make("span", { class: "words" });
        const remove = make("button", { type: "button", onclick: () => this.remove(event) }, "Remove");
        const row = {
            element: make("li", {}, time, words, remove),
            remove,
            show: () => {
                words.textContent = event.words ?? "";
                time.setAttribute("aria-label", `Time: ${words.textContent}`);
                remove.setAttribute("aria-label", `Remove: ${this.times.words(event.at)} ${words.textContent}`);
                if (document.activeElement === time) return;
                time.type = this.times.fieldType;
                time.value = this.times.field(event.at);
                time.setCustomValidity("");
            },
        };
        return row;
    }

    /** The focus goes to the next event, or to the form. */
    remove(event) {
        const { events } = this;
        const next = events[events.indexOf(event) + 1] ?? events[events.indexOf(event) - 1];
        (next ? this.byEvent.get(next).remove : this.kind).focus();
        this.handlers.removed(event);
    }

    show(events, times) {
        this.events = events;
        const isOther = this.times?.fieldType !== times.fieldType;
        this.times = times;
        for (const event of this.byEvent.keys()) if (!events.includes(event)) this.byEvent.delete(event);
        for (const event of events) if (!this.byEvent.has(event)) this.byEvent.set(event, this.makeRow(event));
        const rows = events.map((event) => this.byEvent.get(event));
        for (const row of rows) row.show();
        const focused = document.activeElement;
        const isTyped = this.rows.contains(focused) && focused.tagName === "INPUT" && rows.length === this.rows.childElementCount;
        // A row that moves would lose the focus.
        if (!isTyped) fill(this.rows, rows.map(({ element }) => element));
        if (!isTyped && this.rows.contains(focused)) focused.focus();
        if (isOther || !this.time.value) {
            this.time.type = times.fieldType;
            this.time.value = times.field(times.length / 2);
        }
    }
}
