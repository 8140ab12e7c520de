/// The report of a recording: its tilt and length, and the tolerances of the Sensitivities.
import { extremes, lengthAxis, lengthScale, tiltAxis, tiltScale, TimeChart } from "./charts.js";
import { fill, make } from "./dom.js";
import { ElapsedTimes } from "./local_time.js";
import { makeSummary } from "./night.js";
import { lastUpTo, secondsOf } from "./night_data.js";
import { makeTimePanel } from "./time_panel.js";
import { View } from "./view.js";
import { duration } from "./words.js";

const seriesOf = (colour) => (theme) =>
    [0, 1].map(() => ({ stroke: () => theme()[colour], width: 1.25, points: { show: false } }));

/** The tolerance of each Sensitivity as a line; that of the suitable one is filled. */
function drawTolerances(data) {
    return (ctx, area, chart) => {
        const { theme } = chart;
        if (data.suitable !== null) {
            const top = chart.level(data.tolerances[data.suitable]);
            ctx.fillStyle = theme.band;
            ctx.fillRect(area.left, top, area.width, chart.level(0) - top);
        }
        data.tolerances.forEach((tolerance, sensitivity) => {
            const isSuitable = sensitivity === data.suitable;
            ctx.fillStyle = isSuitable ? theme.on : theme.muted;
            ctx.globalAlpha = isSuitable ? 1 : 0.35;
            ctx.fillRect(area.left, chart.level(tolerance) - 0.5, area.width, isSuitable ? 2 : 1);
        });
        ctx.globalAlpha = 1;
    };
}

/** The names of the lines, at their right ends. One that would cover the name before is left out. */
function nameTolerances(data) {
    return (ctx, area, chart) => {
        const { theme } = chart;
        ctx.font = theme.font;
        ctx.textBaseline = "middle";
        ctx.textAlign = "right";
        const suitableLevel = data.suitable === null ? -Infinity : chart.level(data.tolerances[data.suitable]);
        let free = -Infinity;
        data.tolerances.forEach((tolerance, sensitivity) => {
            const level = chart.level(tolerance);
            const isSuitable = sensitivity === data.suitable;
            if (!isSuitable && (level - free < 14 || Math.abs(level - suitableLevel) < 14)) return;
            const text = isSuitable || sensitivity === 0 ? `Sensitivity ${sensitivity}` : `${sensitivity}`;
            const right = area.left + area.width - 6;
            const width = ctx.measureText(text).width + 8;
            ctx.fillStyle = theme.surface;
            ctx.fillRect(right - width + 4, level - 7, width, 14);
            ctx.fillStyle = isSuitable ? theme.on : theme.muted;
            ctx.fillText(text, right, level);
            free = level;
        });
    };
}

function makeCharts(data, times, view, stack) {
    const elapsed = new ElapsedTimes();
    const [, steepest] = extremes(data.tilts[1]);
    const [shortest] = extremes(data.lengths[0]);
    const [, longest] = extremes(data.lengths[1]);
    const title = (name, text) =>
        stack.append(make("p", { class: "chart-title" }, make("strong", {}, name), ` ${text}`));
    title("Tilt", "in degrees off the vertical; each line is the tolerance of a Sensitivity from 0 to 9");
    const tilt = new TimeChart(stack, view, elapsed, [times, ...data.tilts], {
        height: 340,
        top: true,
        bottom: false,
        scale: tiltScale(Math.max(20, Math.min(90, steepest))),
        axis: tiltAxis,
        series: seriesOf("tilt"),
        behind: drawTolerances(data),
        before: nameTolerances(data),
    });
    title("Length", "in g; the band from 0.9 to 1.1 g is a phone at rest");
    const length = new TimeChart(stack, view, elapsed, [times, ...data.lengths], {
        height: 160,
        top: false,
        bottom: true,
        scale: lengthScale(shortest, longest),
        axis: lengthAxis,
        series: seriesOf("length"),
        behind(ctx, area, chart) {
            const top = chart.level(1.1);
            ctx.fillStyle = chart.theme.band;
            ctx.fillRect(area.left, top, area.width, chart.level(0.9) - top);
        },
    });
    return [tilt, length];
}

const rangeInWords = (least, most, decimals, unit) =>
    least === most
        ? `${least.toFixed(decimals)}${unit}`
        : `${least.toFixed(decimals)} to ${most.toFixed(decimals)}${unit}`;

/** The highest Sensitivity that a tilt passes; absent if none. */
function highestPassing(data, tilt) {
    const failing = data.tolerances.findIndex((tolerance) => tilt >= tolerance);
    return failing < 0 ? data.tolerances.length - 1 : failing - 1;
}

function valuesAt(data, index) {
    const [least, most] = data.tilts.map((column) => column[index]);
    const [shortest, longest] = data.lengths.map((column) => column[index]);
    const atRest = shortest > 0.9 && longest < 1.1;
    const highest = highestPassing(data, most);
    return [
        ["Tilt", `${rangeInWords(least, most, 2, "°")} off the vertical, screen ${data.screenDown[index] ? "down" : "up"}`],
        ["Length", `${rangeInWords(shortest, longest, 3, " g")}${atRest ? "" : ", not at rest"}`],
        ["Passes", !atRest || highest < 0 ? "at no Sensitivity" : highest === 0 ? "at Sensitivity 0" : `at Sensitivity 0 to ${highest}`],
    ];
}

/** What a page about the recording is called. */
export function recordingHeading({ name, samples, end }) {
    const count = `${samples} ${samples === 1 ? "sample" : "samples"}`;
    return { title: name, heading: name, sub: `${count} in ${duration(end)}` };
}

/** Draws the recording at the end of `element`, until `signal` aborts it. */
export function drawRecording(data, element, { signal } = {}) {
    const times = Array.from(secondsOf(data.times));
    const view = new View(data.end);
    const elapsed = new ElapsedTimes();
    const indexAt = () => Math.max(lastUpTo(times, view.cursor + 0.0005), 0);
    const to = (index) => view.pointAt(times[Math.min(Math.max(index, 0), times.length - 1)]);
    const valuesInWords = () => valuesAt(data, indexAt()).map(([name, text]) => `${name}: ${text}.`).join(" ");
    const panel = makeTimePanel(view, {
        name: "Time in the recording",
        whole: "Whole recording",
        makeCharts: (stack) => makeCharts(data, times, view, stack),
        handlers: {
            step: (direction) => to(indexAt() + direction),
            first: () => to(0),
            last: () => to(times.length - 1),
        },
        describe: () => `${elapsed.clock(view.cursor)}. ${valuesInWords()}`,
        shown: () => `${elapsed.clock(view.from)} to ${elapsed.clock(view.to)}`,
        signal,
    });
    const moment = make("section", { class: "moment", "aria-label": "At the cursor" });
    const update = () =>
        fill(
            moment,
            make("h2", {}, make("time", {}, elapsed.clock(view.cursor))),
            make("p", { class: "day" }, "since the start of the recording"),
            make("dl", { class: "why" }, valuesAt(data, indexAt()).map(([name, text]) => [make("dt", {}, name), make("dd", {}, text)])),
        );
    view.observe(update);
    update();
    const grouped = data.samplesInGroup > 1
        ? [`Each point of the charts stands for ${data.samplesInGroup} samples: the two lines are their lowest and their highest value.`]
        : [];
    element.append(
        makeSummary({
            ...data,
            outcome: data.suitable === null ? "neverQuiet" : "quiet",
            remarks: [...data.remarks, ...grouped],
        }),
        make("div", { class: "night" }, panel.element, moment),
    );
    panel.start();
}
