/// The report of a night.
import { makeChanges } from "./changes.js";
import { eachPart, extremes, lengthAxis, lengthScale, tiltAxis, tiltScale, TimeChart } from "./charts.js";
import { fill, make } from "./dom.js";
import { laneChart } from "./lanes.js";
import { LocalTimes } from "./local_time.js";
import { hasReading, lastUpTo, NightData, stepAt } from "./night_data.js";
import { makeTimePanel } from "./time_panel.js";
import { View } from "./view.js";
import { countInWords, duration, explained, readingInWords } from "./words.js";

/// A jump from the table shows this many seconds on both sides.
const jumpMargin = 150;

function capital(text) {
    return text.charAt(0).toUpperCase() + text.slice(1);
}

/** The verdict, what went wrong, and the figures. */
export function makeSummary({ outcome = "quiet", verdict, wrong = [], figures = [], remarks = [] }) {
    const isBad = outcome === "notBack" || wrong.length > 0;
    const rating = isBad ? "bad" : outcome === "quiet" ? "good" : "fair";
    return make(
        "section",
        { class: `summary ${rating}`, "aria-label": "Summary" },
        wrong.map((clause) =>
            make("p", { class: "wrong" }, make("strong", {}, "Something is wrong: "), `${clause}.`),
        ),
        verdict.map((line) => make("p", { class: "verdict" }, line)),
        figures.length > 0
            ? make(
                  "dl",
                  { class: "figures" },
                  figures.map(([name, value]) =>
                      make("div", {}, make("dt", {}, capital(name)), make("dd", {}, value)),
                  ),
              )
            : null,
        remarks.length > 0 ? make("ul", { class: "remarks" }, remarks.map((line) => make("li", {}, line))) : null,
    );
}

/** Behind the charts: the time in which the phone is quiet. */
function washQuiet(night) {
    return (ctx, area, chart) => {
        ctx.fillStyle = chart.theme["quiet-wash"];
        eachPart(night.lanes.quiet ?? [], chart.view, ([, quiet], begins, ends) => {
            if (!quiet) return;
            const from = chart.position(begins, area);
            ctx.fillRect(from, area.top, chart.position(ends, area) - from, area.height);
        });
    };
}

function fillBand(ctx, chart, from, to, low, high) {
    const top = chart.level(high);
    ctx.fillStyle = chart.theme.band;
    ctx.fillRect(from, top, to - from, chart.level(low) - top);
}

/** A line of readings. Its round ends show a reading that stands alone between two gaps. */
function lineOf(theme, colour) {
    return {
        stroke: () => theme()[colour],
        width: 2.5,
        cap: "round",
        points: { size: 5, stroke: () => theme()[colour], fill: () => theme()[colour] },
    };
}

function tiltChart(night, wash) {
    return {
        height: 190,
        top: true,
        bottom: false,
        scale: tiltScale(180),
        axis: tiltAxis,
        series: (theme) => [lineOf(theme, "tilt")],
        behind(ctx, area, chart) {
            wash(ctx, area, chart);
            eachPart(night.tolerances, chart.view, ([, tolerance], begins, ends) => {
                const high = tolerance === null ? 180 : Math.max(0, Math.min(tolerance, 180));
                fillBand(ctx, chart, chart.position(begins, area), chart.position(ends, area), 0, high);
            });
        },
    };
}

function lengthChart(night, wash) {
    const [least, most] = extremes(night.columns[2]);
    return {
        height: 120,
        top: false,
        bottom: false,
        scale: lengthScale(least, most),
        axis: lengthAxis,
        series: (theme) => [lineOf(theme, "length")],
        behind(ctx, area, chart) {
            wash(ctx, area, chart);
            fillBand(ctx, chart, area.left, area.left + area.width, 0.9, 1.1);
        },
    };
}

function chartTitle(title, text) {
    return make("p", { class: "chart-title" }, make("strong", {}, title), ` ${text}`);
}

function makeCharts(night, view, stack) {
    const { columns, local } = night;
    const wash = washQuiet(night);
    const [, tolerance, screenDown] = night.tolerances[night.tolerances.length - 1] ?? [0, null, true];
    const passes = tolerance === null ? "" : `; the band up to ${tolerance.toFixed(1)}° is the tolerance`;
    stack.append(chartTitle("Tilt", `in degrees off screen ${screenDown ? "down" : "up"}${passes}`));
    const tilt = new TimeChart(stack, view, local, [columns[0], columns[1]], tiltChart(night, wash));
    stack.append(chartTitle("Length", "of the reading in g; the band from 0.9 to 1.1 g is a phone at rest"));
    const length = new TimeChart(stack, view, local, [columns[0], columns[2]], lengthChart(night, wash));
    stack.append(chartTitle("Monitor and phone", "with a tint while the phone is quiet"));
    const lanes = new TimeChart(stack, view, local, [[0, view.end], [null, null]], laneChart(night, wash));
    return [tilt, length, lanes];
}

const radioNames = {
    airplane: "Airplane mode", wifi: "Wi-Fi", bluetooth: "Bluetooth", cellularData: "Cellular data",
    maxRate: "Data rate", location: "Location", call: "Call", charger: "Charger",
};

function valueInWords(lane, value) {
    if (lane === "charger") return value ? "plugged in" : "unplugged";
    return value === true ? "on" : value === false ? "off" : value;
}

function makeRadios(night, time) {
    return make(
        "dl",
        { class: "radios" },
        Object.entries(radioNames).map(([lane, name]) => {
            const [, value] = stepAt(night.lanes[lane], time);
            const isOn = value !== false && value !== "off" && value !== "none";
            return make("div", { class: isOn ? "is-on" : "is-off" }, make("dt", {}, name), make("dd", {}, valueInWords(lane, value)));
        }),
    );
}

/** What the monitor knew at the cursor. */
function makeMoment(night, view) {
    const { local } = night;
    const element = make("section", { class: "moment", "aria-label": "At the cursor" });
    let shownCycle;
    let shownTime;
    const update = () => {
        const time = view.cursor;
        const cycle = night.cycleAt(time);
        if (cycle === shownCycle && Math.floor(time) === shownTime) return;
        shownCycle = cycle;
        shownTime = Math.floor(time);
        const heading = [
            make("h2", {}, make("time", {}, local.clock(time))),
            make("p", { class: "day" }, `${local.day(time)}, ${local.zone(time)}`),
        ];
        if (cycle < 0) {
            fill(element, heading, make("p", {}, "The monitor has not done anything yet."), makeRadios(night, time));
            return;
        }
        const isReading = hasReading(night.cycles.outcomes[cycle]);
        const age = time - night.times[cycle];
        const what = isReading ? "Reading at" : "No reading since";
        const log = night.logOf(cycle);
        const story = night.storyOf(cycle);
        fill(
            element,
            heading,
            make(
                "h3",
                { class: "cycle", "data-cycle": String(cycle) },
                `${what} ${local.clock(night.times[cycle])}`,
                isReading && age >= 60 ? ` (${duration(age)} before)` : "",
            ),
            make("dl", { class: "why" }, explained(night, cycle).map(([name, text]) => [make("dt", {}, name), make("dd", {}, text)])),
            story.length > 0
                ? [make("h3", {}, "What happened"), make("ul", { class: "story" }, story.map(([, kind, text]) => make("li", { class: `kind-${kind.replace(" ", "-")}` }, text)))]
                : null,
            make("h3", {}, "The phone"),
            makeRadios(night, time),
            log.length > 0
                ? [make("h3", {}, "System log of the cycle"), make("pre", { tabindex: "0", "aria-label": "System log" }, log.join("\n"))]
                : null,
        );
    };
    view.observe(update);
    update();
    return element;
}

/** Moves the cursor from reading to reading, and from change to change. */
function makeHandlers(night, view) {
    const to = (cycle) => view.pointAt(night.times[Math.min(Math.max(cycle, 0), night.times.length - 1)] ?? 0);
    const changes = [...new Set(night.story.map(([time]) => time))];
    return {
        step: (direction) => to(night.cycleAt(view.cursor) + direction),
        first: () => to(0),
        last: () => to(night.times.length - 1),
        change: (direction) => {
            const at = lastUpTo(changes, view.cursor + 0.0005);
            const isOnIt = at >= 0 && Math.abs(changes[at] - view.cursor) < 0.001;
            const next = direction > 0 ? at + 1 : isOnIt ? at - 1 : at;
            if (changes[next] !== undefined) view.pointAt(changes[next]);
        },
    };
}

function momentForScreenReaders(night, view) {
    const cycle = night.cycleAt(view.cursor);
    const time = night.local.clock(view.cursor);
    if (cycle < 0) return time;
    return hasReading(night.cycles.outcomes[cycle])
        ? `${time}. ${readingInWords(night, cycle)} ${countInWords(night, cycle)}`
        : `${time}. ${explained(night, cycle)[0][1]}`;
}

/** What a page about the night is called, in two lines and in one. */
export function nightHeading({ localTimes, zone, end }) {
    const local = new LocalTimes(localTimes);
    const from = local.day(0);
    const to = local.day(end);
    const sameYear = from.slice(-4) === to.slice(-4);
    return {
        title: from,
        heading: from === to ? from : `${from.replace(/ \d+$/, sameYear ? "" : "$&")} to ${to}`,
        sub: `${local.hours(0)} to ${local.hours(end)}, ${duration(end)}; local times in ${zone}`,
    };
}

/**
 * Draws the night at the end of `element`, until `signal` aborts it. `before` is the view of a night
 * that was drawn in its place: its part of the axis is kept if it fits. Returns the view.
 */
export function drawNight(data, element, { signal, before } = {}) {
    const night = new NightData(data);
    const { local } = night;
    const view = new View(night.end);
    const first = night.story.find(([, kind]) => kind === "state") ?? night.story[0];
    view.cursor = first ? first[0] : 0;
    const hidden = before?.hiddenKinds ?? new Set();
    view.hiddenKinds = hidden;
    if (before?.end === view.end) Object.assign(view, { from: before.from, to: before.to, cursor: before.cursor });

    const panel = makeTimePanel(view, {
        name: "Time",
        whole: "Whole night",
        makeCharts: (stack) => makeCharts(night, view, stack),
        handlers: makeHandlers(night, view),
        describe: () => momentForScreenReaders(night, view),
        shown: () => `${local.hours(view.from)} to ${local.hours(view.to)} (${duration(view.to - view.from)})`,
        signal,
    });
    const jump = (time) => {
        view.show(time - jumpMargin, time + jumpMargin);
        view.pointAt(time);
        panel.stack.scrollIntoView({ block: "nearest" });
        panel.stack.focus({ preventScroll: true });
    };
    element.append(
        makeSummary(night),
        make("div", { class: "night" }, panel.element, makeMoment(night, view)),
        makeChanges(night, jump, hidden),
    );
    panel.start();
    return view;
}
