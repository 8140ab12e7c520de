/// What would the night have been? A scenario, changed by hand, and its report.
import { fill, freshId, make } from "../../report/page/src/dom.js";
import { LocalTimes } from "../../report/page/src/local_time.js";
import { drawNight, nightHeading } from "../../report/page/src/night.js";
import { EventList } from "./event_list.js";
import { download, fileButton } from "./files.js";
import { Panel } from "./panel.js";
import { drawSettings } from "./settings_form.js";
import { Timeline } from "./timeline.js";

const secondsOfDay = 86400;

/** Seconds between two local times such as "2014-03-01T22:30:00". */
const secondsBetween = (from, to) => (Date.parse(`${to}Z`) - Date.parse(`${from}Z`)) / 1000;

/** A local time, moved by a number of seconds. */
const movedBy = (local, seconds) => new Date(Date.parse(`${local}Z`) + seconds * 1000).toISOString().slice(0, 19);

const withSeconds = (local) => (local.length === 16 ? `${local}:00` : local);

/** Last night, in the zone of the browser. */
function lastNight() {
    const today = new Date();
    const dayOf = (date) =>
        [date.getFullYear(), date.getMonth() + 1, date.getDate()].map((part) => String(part).padStart(2, "0")).join("-");
    const yesterday = new Date(today.getFullYear(), today.getMonth(), today.getDate() - 1);
    return {
        start: `${dayOf(yesterday)}T22:30:00`,
        end: `${dayOf(today)}T08:00:00`,
        timezone: Intl.DateTimeFormat().resolvedOptions().timeZone,
    };
}

/** Texts of the C++ name the options of the command. */
const inWordsOfThePage = (text) => text.replaceAll("--start", "Start").replaceAll("--end", "End").replaceAll("--timezone", "Time zone");

export class NightPanel extends Panel {
    constructor(element, program) {
        super(element);
        this.program = program;
        this.timeline = new Timeline({
            moved: (event, at, isDragging) => this.move(event, at, isDragging),
            removed: (event) => this.changeEvents(this.night.events.filter((other) => other !== event)),
            drawn: (events) => this.draw(events),
        });
        this.list = new EventList({
            moved: (event, at) => this.move(event, at, false),
            removed: (event) => this.changeEvents(this.night.events.filter((other) => other !== event)),
            added: (event) => this.changeEvents([...this.night.events, event]),
        });
        this.result = make("div", { class: "result" });
        this.settings = make("div", { class: "settings" });
        this.frame = this.makeFrame();
        element.append(
            make(
                "div",
                { class: "card" },
                make("h2", {}, "What would last night have been?"),
                make("p", {}, "Drag what happened to its time, and draw over an empty part of a lane to add something. The night is played again as you drag, and what Noctara did is shown below."),
                this.timeline.element,
                make("p", { class: "hint" }, "Keys: ← → move the chosen event by a minute, Page Up and Page Down by a quarter of an hour, Delete removes it."),
                make("details", { class: "choices" }, make("summary", {}, "Exact times, and other events"), this.list.element),
                make("details", { class: "choices" }, make("summary", {}, "Date, hours and time zone"), this.frame),
                make("details", { class: "choices" }, make("summary", {}, "Settings of this night"), this.settings),
                make(
                    "div",
                    { class: "actions" },
                    fileButton("Choose a scenario…", ".toml,application/toml", (file) => this.open(file)),
                    make("button", { type: "button", onclick: () => download("night.toml", this.night.scenario) }, "Download the scenario"),
                    make("button", { type: "button", onclick: () => this.begin() }, "Begin again"),
                ),
                this.notices,
            ),
            this.result,
        );
        this.begin();
    }

    makeFrame() {
        const field = (name, control) => {
            control.id = freshId("frame");
            return make("div", {}, make("label", { for: control.id }, name), control);
        };
        const change = () => this.changeFrame();
        this.start = make("input", { type: "datetime-local", step: "1", onchange: change });
        this.end = make("input", { type: "datetime-local", step: "1", onchange: change });
        const zones = [...new Set(["UTC", ...Intl.supportedValuesOf("timeZone")])];
        this.zone = make("select", { onchange: change }, zones.map((zone) => make("option", {}, zone)));
        return make("div", { class: "fields" }, field("Start", this.start), field("End", this.end), field("Time zone", this.zone));
    }

    begin() {
        return this.attempt(async () => {
            let night;
            try {
                night = await this.program.ask("scenario", [lastNight()]);
            } catch {
                night = await this.program.ask("scenario", [{}]); // The clocks skip the start, for example.
            }
            await this.take(night);
        });
    }

    open(file) {
        return this.attempt(async () => {
            const most = 1 << 20;
            if (file.size > most) throw new Error(`${file.name}: larger than 1 MiB; give a scenario file`);
            const text = await file.text();
            let night;
            try {
                night = await this.program.ask("scenario", [{ scenario: text }]);
            } catch (error) {
                throw new Error(error.message.replace(/^the scenario/, file.name));
            }
            await this.take(night);
            this.tell(`This is ${file.name}.`);
        });
    }

    /** Takes the settings of a settings file {file, bytes}. */
    takeSettings(file) {
        return this.change("scenarioWithSettings", [this.night.scenario, file], `The night has the settings of ${file.file}.`);
    }

    /** Shows another night, and plays it. */
    async take(night) {
        this.night = night;
        this.local = new LocalTimes(night.localTimes);
        this.show();
        await this.play(false);
    }

    /** Asks the program for a changed night. */
    async change(name, args, told = "") {
        const done = await this.attempt(async () => {
            try {
                await this.take(await this.program.ask(name, args));
            } catch (error) {
                throw new Error(inWordsOfThePage(error.message));
            }
            this.tell(told);
        });
        if (!done) this.show();
    }

    changeFrame() {
        const { night } = this;
        const [start, end] = [this.start, this.end].map(({ value }) => withSeconds(value));
        if (!start || !end) return this.show();
        // The events keep their local times. The end follows to another day.
        const later = secondsBetween(night.start, start);
        const days = Math.round(later / secondsOfDay) * secondsOfDay;
        const events = night.events.map((event) => ({ ...event, at: Math.max(event.at - (later - days), 0) }));
        const newEnd = end === night.end ? movedBy(end, days) : end;
        return this.change("scenario", [{ scenario: night.scenario, start, end: newEnd, timezone: this.zone.value, events }]);
    }

    changeEvents(events) {
        return this.change("scenario", [{ scenario: this.night.scenario, events: inOrder(events) }]);
    }

    /** Adds events that are being drawn. */
    draw(events) {
        this.night.events.push(...events);
        return this.move(events[1], events[1].at, true);
    }

    move(event, at, isDragging) {
        event.at = at;
        this.night.events = inOrder(this.night.events);
        this.showEvents();
        return this.attempt(() => this.play(isDragging));
    }

    /** Plays the night. While it does so, only the last of further calls counts. */
    async play(isDragging) {
        this.wanted = { isDragging };
        if (this.isPlaying) return;
        this.isPlaying = true;
        try {
            while (this.wanted) {
                const { isDragging: isQuick } = this.wanted;
                this.wanted = undefined;
                await this.playOnce(isQuick);
            }
        } finally {
            this.isPlaying = false;
        }
    }

    /** Advice takes longer than the night itself, so a night without it comes first. */
    async playOnce(isQuick) {
        const { night } = this;
        const asked = [...night.events];
        const { scenario, events } = await this.program.ask("scenario", [{ scenario: night.scenario, events: asked }]);
        night.scenario = scenario;
        asked.forEach((event, index) => (event.words ??= events[index].words));
        if (night === this.night) this.showEvents();
        this.report(await this.program.ask("night", [scenario, { advice: false }]));
        if (isQuick || this.wanted || night !== this.night) return;
        const advised = await this.program.ask("night", [scenario]);
        if (!this.wanted && night === this.night) this.report(advised);
    }

    showEvents() {
        this.timeline.show(this.night, this.local);
        this.list.show(this.night, this.local);
    }

    /** Shows the night itself, without its report. */
    show() {
        const { night } = this;
        this.showEvents();
        this.start.value = night.start;
        this.end.value = night.end;
        if (![...this.zone.options].some(({ value }) => value === night.timezone)) this.zone.append(make("option", {}, night.timezone));
        this.zone.value = night.timezone;
        drawSettings(night.settings, this.settings, (key, value) =>
            this.change("scenario", [{ scenario: night.scenario, key, value }]),
        );
    }

    report(data) {
        this.drawing?.abort();
        this.drawing = new AbortController();
        const { heading, sub } = nightHeading(data);
        const before = this.view;
        fill(this.result, make("h2", { class: "heading" }, heading), make("p", { class: "sub" }, sub));
        this.view = drawNight(data, this.result, { signal: this.drawing.signal, before });
    }
}

function inOrder(events) {
    return [...events].sort((one, other) => one.at - other.at);
}
