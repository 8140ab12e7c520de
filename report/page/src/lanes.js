/// The lanes below the charts: one row for each thing that changes in the night.
import { eachPart } from "./charts.js";
import { lastUpTo, outcomes } from "./night_data.js";

const laneHeight = 24;
const bar = 15; ///< The height of a bar in a lane.

/** The colour and the text of an "on" that is true, or nothing. */
const whenOn = (colour, text = "on") => (value) => (value ? [colour, text] : null);

const states = {
    watching: ["watching", "watching"],
    quiet: ["quiet", "quiet"],
    suspended: ["suspended", "suspended"],
    "outside the window": ["outside", "outside the window"],
    "not on the charger": ["charger-missing", "not on the charger"],
    off: ["off", "off"],
};

const verdicts = {
    [outcomes.lies]: ["lies", "lies"],
    [outcomes.notLying]: ["not-lying", "does not lie"],
    [outcomes.noSample]: ["nothing", "no sample"],
    [outcomes.deviceMotion]: ["nothing", "device motion"],
};

/** The lanes of a night: name, steps or marks, and how a value looks. */
function lanesOf(night) {
    const { lanes } = night;
    const wakeColour = ([, by]) => (by === "com.quorbit.Noctara" ? "mark" : "call");
    return [
        { name: "State", steps: lanes.state, look: (value) => states[value] },
        { name: "Readings", steps: night.readings, look: (value) => verdicts[value] ?? null },
        { name: "Countdown", steps: night.counts, count: true },
        { name: "Airplane mode", steps: lanes.airplane, look: whenOn("airplane") },
        { name: "Wi-Fi", steps: lanes.wifi, look: whenOn("on") },
        {
            name: "Bluetooth",
            steps: lanes.bluetooth,
            look: (value) => (value === "off" ? null : ["on", value]),
        },
        { name: "Cellular data", steps: lanes.cellularData, look: whenOn("on") },
        { name: "Data rate", steps: lanes.maxRate, look: (value) => [value === "2G" ? "nothing" : "on", value] },
        { name: "Location", steps: lanes.location, look: whenOn("on") },
        { name: "Call", steps: lanes.call, look: (value) => (value === "none" ? null : ["call", value]) },
        { name: "Charger", steps: lanes.charger, look: whenOn("on", "plugged in") },
        { name: "Idle sleep", spans: night.idleSleeps, marks: night.refusals.map((at) => [at, "refused"]), look: ["sleep", "idle sleep"], colour: () => "not-lying" },
        { name: "Wake-ups", marks: night.wakeUps, colour: wakeColour },
        { name: "Cues", marks: night.cues, colour: () => "mark" },
        {
            name: "Applications",
            marks: night.applications.map(([at, verb, name]) => [at, `${name} ${verb}`]),
            colour: ([, text]) => (text.endsWith("quit") ? "not-lying" : "mark"),
        },
    ];
}

/** Text inside a bar, if it fits. */
function write(ctx, text, from, to, middle, colour) {
    const room = to - from - 10;
    if (room < 8) return;
    if (ctx.measureText(text).width > room) return;
    ctx.fillStyle = colour;
    ctx.fillText(text, from + 5, middle);
}

function drawBar(ctx, theme, [colour, text], from, to, top, area) {
    const left = Math.max(from, area.left);
    const right = Math.min(Math.max(to, from + 1), area.left + area.width);
    ctx.fillStyle = theme[colour];
    ctx.fillRect(left, top, right - left, bar);
    write(ctx, text, left, right, top + bar / 2 + 0.5, theme["on-colour"]);
}

function drawSteps(ctx, chart, area, lane, top) {
    let drawnTo = -1;
    let drawn = null;
    eachPart(lane.steps, chart.view, ([, value], begins, ends) => {
        const look = lane.look(value);
        if (!look) return;
        const from = chart.position(begins, area);
        const to = chart.position(ends, area);
        // Many short parts on the same pixel: the first is enough.
        if (to - from < 1 && Math.floor(from) === drawnTo && drawn === look[0]) return;
        drawBar(ctx, chart.theme, look, from, to, top, area);
        drawnTo = Math.floor(from);
        [drawn] = look;
    });
}

function drawCounts(ctx, chart, area, lane, top) {
    ctx.fillStyle = chart.theme.count;
    let drawnTo = -1;
    let drawn = 0;
    eachPart(lane.steps, chart.view, ([, count], begins, ends) => {
        if (count === 0) return;
        const from = chart.position(begins, area);
        const width = Math.max(chart.position(ends, area) - from, 1.5);
        if (width <= 1.5 && Math.floor(from) === drawnTo && drawn >= count) return;
        const height = (bar * count) / 3;
        ctx.fillStyle = chart.theme.count;
        ctx.fillRect(from, top + bar - height, width, height);
        if (count === 3 || width > 24)
            write(ctx, `${count} of 3`, from, from + width, top + bar / 2 + 0.5, chart.theme["on-colour"]);
        drawnTo = Math.floor(from);
        drawn = count;
    });
}

function drawSpans(ctx, chart, area, lane, top) {
    const first = Math.max(lastUpTo(lane.spans, chart.view.from, ([from]) => from), 0);
    for (let i = first; i < lane.spans.length && lane.spans[i][0] <= chart.view.to; ++i) {
        const [begins, ends] = lane.spans[i];
        const from = chart.position(begins, area);
        drawBar(ctx, chart.theme, lane.look, from, chart.position(ends, area), top, area);
    }
}

/** Marks at instants. Their texts stand beside them if there is room before the next one. */
function drawMarks(ctx, chart, area, lane, top) {
    const { marks } = lane;
    const places = [];
    for (let i = Math.max(lastUpTo(marks, chart.view.from, ([at]) => at), 0); i < marks.length && marks[i][0] <= chart.view.to; ++i) {
        const at = chart.position(marks[i][0], area);
        if (at < area.left - 1) continue;
        const last = places[places.length - 1];
        if (last && at - last.at < 3) last.texts.add(marks[i][1]);
        else places.push({ at, texts: new Set([marks[i][1]]), colour: lane.colour(marks[i]) });
    }
    places.forEach(({ at, texts, colour }, index) => {
        ctx.fillStyle = chart.theme[colour];
        ctx.beginPath();
        ctx.roundRect(at - 1.5, top, 3, bar, 1.5);
        ctx.fill();
        const text = [...texts].slice(0, 4).join(", ");
        const limit = places[index + 1]?.at ?? area.left + area.width;
        if (at + 10 + ctx.measureText(text).width > limit) return;
        ctx.fillStyle = chart.theme.text;
        ctx.fillText(text, at + 5, top + bar / 2 + 0.5);
    });
}

/** The options of a TimeChart for the lanes of a night. */
export function laneChart(night, behind) {
    const lanes = lanesOf(night);
    const topOf = (index, area) => area.top + index * laneHeight + (laneHeight - bar) / 2;
    return {
        height: lanes.length * laneHeight + 32,
        top: false,
        bottom: true,
        scale: { range: [0, 1] },
        axis: { splits: () => [], grid: { show: false } },
        series: () => [{ show: false }],
        behind,
        before(ctx, area, chart) {
            ctx.font = chart.theme.font;
            ctx.textBaseline = "middle";
            ctx.textAlign = "left";
            lanes.forEach((lane, index) => {
                const top = topOf(index, area);
                ctx.fillStyle = chart.theme.line;
                ctx.fillRect(area.left, area.top + index * laneHeight, area.width, 1);
                if (lane.count) drawCounts(ctx, chart, area, lane, top);
                else if (lane.steps) drawSteps(ctx, chart, area, lane, top);
                if (lane.spans) drawSpans(ctx, chart, area, lane, top);
                if (lane.marks) drawMarks(ctx, chart, area, lane, top);
            });
        },
        names(u, chart) {
            const ratio = devicePixelRatio;
            u.ctx.save();
            u.ctx.scale(ratio, ratio);
            u.ctx.font = chart.theme.font;
            u.ctx.textBaseline = "middle";
            u.ctx.textAlign = "right";
            u.ctx.fillStyle = chart.theme.text;
            lanes.forEach((lane, index) => {
                const middle = u.bbox.top / ratio + index * laneHeight + laneHeight / 2;
                u.ctx.fillText(lane.name, u.bbox.left / ratio - 8, middle + 0.5);
            });
            u.ctx.restore();
        },
    };
}
