/// What would the night have been? A scenario, changed by hand, and its report.
import { fill, freshId, make } from "../../report/page/src/dom.js";
import { drawNight, makeSummary, nightHeading } from "../../report/page/src/night.js";
import { EventList } from "./event_list.js";
import { download, fileButton } from "./files.js";
import { localSeconds, localText, NightTimes } from "./night_times.js";
import { withNames } from "./option_names.js";
import { Panel } from "./panel.js";
import { drawSettings } from "./settings_form.js";
import { Timeline } from "./timeline.js";

const secondsOfDay = 86400;

/// In milliseconds. The page says that it plays a night if that takes longer.
const longWait = 300;

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

const namesOfOptions = { "--start": "Start", "--end": "End", "--timezone": "Time zone" };

/** A text of the program, without lines and columns of the scenario, which the page does not show. */
const inWordsOfThePage = (text) => withNames(text, namesOfOptions).replace(/^the scenario:\d+:\d+: /, "");

const inOrder = (events) => [...events].sort((one, other) => one.at - other.at);

export class NightPanel extends Panel {
    constructor(element, program) {
        super(element);
        this.program = program;
        const removed = (event) => this.setEvents(this.events.filter((other) => other !== event));
        const moved = (event, at, isDragging = false) => this.move(event, at, isDragging);
        const added = (event) => this.setEvents([...this.events, event]);
        this.timeline = new Timeline({ moved, removed, drawn: (events) => this.setEvents([...this.events, ...events], true) });
        this.list = new EventList({ moved, removed, added });
        this.result = make("div", { class: "result" });
        this.settings = make("div", { class: "settings" });
        const part = (summary, content) => make("details", { class: "choices" }, make("summary", {}, summary), content);
        element.append(
            make(
                "div",
                { class: "card" },
                make("h2", {}, "What would last night have been?"),
                make("p", {}, "Drag what happened to its time, and draw over an empty part of a lane to add something. The night is played again as you drag, and what Noctara did is shown below."),
                this.timeline.element,
                make("p", { class: "hint" }, "Keys: ← → move the chosen event by a minute, Page Up and Page Down by a quarter of an hour, Delete removes it."),
                this.notices,
                part("Exact times, and other events", this.list.element),
                part("Date, hours and time zone", this.makeFrame()),
                part("Settings of this night", this.settings),
                make(
                    "div",
                    { class: "actions" },
                    fileButton("Choose a scenario…", ".toml,application/toml", (file) => this.open(file)),
                    make("button", { type: "button", onclick: () => this.inTurn(() => download("night.toml", this.night.scenario)) }, "Download the scenario"),
                    make("button", { type: "button", onclick: () => this.begin() }, "Begin again"),
                ),
            ),
            this.result,
        );
        element.inert = true; // Until there is a night.
        this.begin();
    }

    makeFrame() {
        const field = (name, control) => {
            control.id = freshId("frame");
            return make("div", {}, make("label", { for: control.id }, name), control);
        };
        this.start = make("input", { type: "datetime-local", step: "1", required: true });
        this.end = make("input", { type: "datetime-local", step: "1", required: true });
        const zones = [...new Set(["UTC", ...Intl.supportedValuesOf("timeZone")])];
        this.zone = make("select", {}, zones.map((zone) => make("option", {}, zone)));
        const changed = (event) => {
            event.preventDefault();
            this.changeFrame();
        };
        return make(
            "form",
            { class: "fields", onsubmit: changed },
            field("Start", this.start),
            field("End", this.end),
            field("Time zone", this.zone),
            make("button", {}, "Apply"),
        );
    }

    begin() {
        return this.inTurn(async () => {
            let night;
            try {
                night = await this.program.ask("scenario", [lastNight()]);
            } catch {
                // The typical night is used as it is if the clocks skip the start in this zone.
                night = await this.program.ask("scenario", [{}]);
            }
            this.take(night, night.events);
            await this.playOnce(false);
        });
    }

    open(file) {
        return this.inTurn(async () => {
            const most = 1 << 20;
            if (file.size > most) throw new Error(`${file.name}: larger than 1 MiB; give a scenario file`);
            const text = await file.text();
            let night;
            try {
                night = await this.program.ask("scenario", [{ scenario: text }]);
            } catch (error) {
                throw new Error(error.message.replace(/^the scenario/, file.name));
            }
            this.take(night, night.events);
            await this.playOnce(false, `This is ${file.name}.`);
        });
    }

    /** Takes the settings of a settings file {file, bytes}. */
    takeSettings(file) {
        return this.change("scenarioWithSettings", () => ({}), [file], `The night has the settings of ${file.file}.`);
    }

    /**
     * Asks the program for a changed night, and plays it. `question()` returns what scenarioOf in
     * script_functions.h has to change; it is called when all earlier changes are made. Events may be
     * added, moved and removed meanwhile.
     */
    async change(name, question, more = [], told = "") {
        const done = await this.inTurn(async () => {
            const events = inOrder(this.events);
            const times = events.map(({ at }) => at);
            try {
                const night = await this.program.ask(name, [{ scenario: this.night.scenario, events, ...question() }, ...more]);
                const kept = keptEvents(events, times, night.events);
                const remaining = kept.filter((_, index) => this.events.includes(events[index]));
                this.take(night, [...remaining, ...this.events.filter((event) => !events.includes(event))]);
            } catch (error) {
                throw new Error(inWordsOfThePage(error.message));
            }
            await this.playOnce(false, told);
        });
        if (!done) this.show();
    }

    /** Makes this the night. */
    take(night, events) {
        this.night = night;
        this.events = inOrder(events);
        this.times = new NightTimes(night);
        this.element.inert = false;
        this.show();
    }

    /** The events keep their local times, and the end moves by as many days as the start. */
    changeFrame() {
        return this.change("scenario", () => {
            const { night, times } = this;
            const dayOf = (text) => Math.floor(localSeconds(text) / secondsOfDay);
            const days = (dayOf(this.start.value) - dayOf(night.start)) * secondsOfDay;
            const isSameEnd = localSeconds(this.end.value) === localSeconds(night.end);
            const later = inOrder(this.events).map(({ at, action, value }) => ({ local: localText(times.localSecondsAt(at) + days), action, value }));
            if (later.some(({ local }) => localSeconds(local) < localSeconds(this.start.value)))
                throw new Error("Start: an event is before it; move the event first, or give an earlier start.");
            return {
                start: localText(localSeconds(this.start.value)),
                end: localText(localSeconds(this.end.value) + (isSameEnd ? days : 0)),
                timezone: this.zone.value,
                events: later,
            };
        });
    }

    setEvents(events, isDragging = false) {
        this.events = inOrder(events);
        this.showEvents();
        return this.play(isDragging);
    }

    move(event, at, isDragging) {
        event.at = at;
        return this.setEvents(this.events, isDragging);
    }

    /** Plays the night after earlier work, once for all calls until then. */
    play(isDragging) {
        this.isDragging = isDragging;
        if (this.isDue) return;
        this.isDue = true;
        this.inTurn(async () => {
            this.isDue = false;
            await this.playOnce(this.isDragging);
        });
    }

    /** Plays the night. The advice follows, because several nights are played to find it. */
    async playOnce(isDragging, told = "") {
        const slow = setTimeout(() => this.tell("Playing the night …"), longWait);
        try {
            told = [told, await this.writeScenario()].filter(Boolean).join(" ");
            const data = await this.program.ask("night", [this.night.scenario, { advice: false }]);
            this.report(data);
            this.tell(`${told} ${data.verdict[0]}`.trim());
            if (isDragging) return;
        } catch (error) {
            throw new Error(inWordsOfThePage(error.message));
        } finally {
            clearTimeout(slow);
        }
        this.follow(async () => {
            if (this.isDue) return;
            const { scenario } = this.night;
            const data = await this.program.ask("night", [scenario]);
            if (this.isDue || scenario !== this.night.scenario) return;
            this.result.querySelector(".summary").replaceWith(makeSummary(data));
            this.tell(`${told} ${data.verdict[0]}`.trim());
        });
    }

    /** Writes the events into the scenario. Returns a sentence about what could not be written. */
    async writeScenario() {
        const asked = inOrder(this.events);
        const times = asked.map(({ at }) => at);
        const { scenario, events } = await this.program.ask("scenario", [{ scenario: this.night.scenario, events: asked }]);
        this.night.scenario = scenario;
        keptEvents(asked, times, events);
        this.showEvents();
        const isMoved = events.some(({ at }, index) => at !== times[index]);
        return isMoved ? "The clocks show a time twice in this night, and a scenario can name only the first: the event has moved there." : "";
    }

    showEvents() {
        this.timeline.show(this.events, this.times);
        this.list.show(this.events, this.times);
    }

    /** Shows the night itself, without its report. */
    show() {
        const { night } = this;
        if (!night) return;
        this.showEvents();
        if (![...this.zone.options].some(({ value }) => value === night.timezone)) this.zone.append(make("option", {}, night.timezone));
        // The user may be typing in these fields. They change only if the night has other values.
        const frame = [night.start, night.end, night.timezone];
        if (String(frame) !== String(this.shownFrame)) [this.start.value, this.end.value, this.zone.value] = frame;
        this.shownFrame = frame;
        drawSettings(night.settings, this.settings, (key, value) => this.change("scenario", () => ({ key, value })));
    }

    report(data) {
        const { heading, sub } = nightHeading(data);
        const before = this.view;
        fill(this.result, make("h2", { class: "heading" }, heading), make("p", { class: "sub" }, sub));
        this.view = drawNight(data, this.result, { signal: this.signalForDrawing(), before });
    }
}

/**
 * The events of an answer, as the objects that were asked about with these times. An event that was
 * moved meanwhile keeps its new time.
 */
function keptEvents(asked, times, answered) {
    return answered.map((event, index) => {
        const same = asked[index];
        if (same?.action !== event.action || same.value !== event.value) return event;
        same.words = event.words;
        if (same.at === times[index]) same.at = event.at;
        return same;
    });
}
