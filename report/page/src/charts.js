/// The charts of tilt and length over time, drawn with uPlot.
import uPlot from "uplot";
import { lastUpTo } from "./night_data.js";
import { readTheme } from "./theme.js";

/// The width of a mark's text on the time axis, with its distance to the next. In CSS pixels.
const markWidth = 66;

/** The width of the column of names beside the charts, in CSS pixels. */
export const gutterOf = (width) => (width < 560 ? 94 : 112);

/** Runs `draw` on the canvas of a chart, in CSS pixels and clipped to the area of the chart. */
function inChart(u, draw) {
    const ratio = uPlot.pxRatio;
    const { ctx, bbox } = u;
    ctx.save();
    ctx.beginPath();
    ctx.rect(bbox.left, bbox.top, bbox.width, bbox.height);
    ctx.clip();
    ctx.scale(ratio, ratio);
    draw(ctx, {
        left: bbox.left / ratio,
        top: bbox.top / ratio,
        width: bbox.width / ratio,
        height: bbox.height / ratio,
    });
    ctx.restore();
}

/** Calls `draw(value, from, to)` for the parts of steps that are in view. */
export function eachPart(steps, view, draw) {
    const first = Math.max(lastUpTo(steps, view.from, (step) => step[0]), 0);
    for (let i = first; i < steps.length && steps[i][0] <= view.to; ++i)
        draw(steps[i], steps[i][0], i + 1 < steps.length ? steps[i + 1][0] : view.end);
}

/**
 * A chart with the time axis of a view. `options`: `height`, `top` (show the times on top),
 * `bottom`, `scale` and `axis` of uPlot for y, `series`, `behind` and `before`, which draw behind
 * and before the lines.
 */
export class TimeChart {
    constructor(parent, view, local, columns, options) {
        this.parent = parent;
        this.view = view;
        this.options = options;
        this.theme = readTheme();
        const timeAxis = (side, shown) => ({
            side,
            scale: "x",
            size: shown ? 26 : 6,
            gap: 5,
            font: this.theme.font,
            stroke: () => this.theme.muted,
            grid: { show: side === 2, stroke: () => this.theme.line, width: 1 },
            ticks: { show: false },
            splits: () => this.marks().marks,
            values: (u, splits) => {
                const { step } = this.marks();
                return splits.map((time) => (shown ? local.mark(time, step) : ""));
            },
        });
        this.marks = () =>
            local.marks(view.from, view.to, Math.max(2, Math.floor(this.plotWidth() / markWidth)));
        this.plot = new uPlot(
            {
                width: this.availableWidth(),
                height: options.height,
                padding: [0, 18, 0, 0],
                legend: { show: false },
                cursor: { x: false, y: false, points: { show: false }, drag: { x: true, y: false, setScale: false } },
                scales: { x: { time: false, range: () => [view.from, view.to] }, y: options.scale },
                axes: [
                    timeAxis(2, options.bottom),
                    {
                        scale: "y",
                        size: () => gutterOf(this.width),
                        gap: 6,
                        font: this.theme.font,
                        stroke: () => this.theme.muted,
                        grid: { stroke: () => this.theme.line, width: 1 },
                        ticks: { show: false },
                        filter: (u, splits) => splits,
                        ...options.axis,
                    },
                    timeAxis(0, options.top),
                ],
                series: [{}, ...options.series(() => this.theme)],
                hooks: {
                    drawClear: [(u) => inChart(u, (ctx, area) => options.behind?.(ctx, area, this))],
                    draw: [
                        (u) => inChart(u, (ctx, area) => options.before?.(ctx, area, this)),
                        (u) => options.names?.(u, this),
                    ],
                    setSelect: [
                        (u) => {
                            if (u.select.width < 3) return;
                            const { left, width } = u.select;
                            u.setSelect({ left: 0, top: 0, width: 0, height: 0 }, false);
                            view.show(u.posToVal(left, "x"), u.posToVal(left + width, "x"));
                        },
                    ],
                },
            },
            columns,
            parent,
        );
        this.line = document.createElement("div");
        this.line.className = "cursor-line";
        this.plot.over.append(this.line);
        this.placeCursor();
    }

    availableWidth() {
        this.width = Math.max(this.parent.clientWidth, 220);
        return this.width;
    }

    plotWidth() {
        return this.plot ? this.plot.bbox.width / uPlot.pxRatio : this.width - gutterOf(this.width);
    }

    /** The position of a time from the left edge of the canvas, in CSS pixels. */
    position(time, area) {
        const { from, to } = this.view;
        return area.left + ((time - from) / (to - from)) * area.width;
    }

    level(value) {
        return this.plot.valToPos(value, "y", true) / uPlot.pxRatio;
    }

    redraw() {
        this.plot.setScale("x", { min: this.view.from, max: this.view.to });
        this.placeCursor();
    }

    placeCursor() {
        const { from, to, cursor } = this.view;
        const share = (cursor - from) / (to - from);
        this.line.hidden = share < 0 || share > 1;
        this.line.style.transform = `translateX(${(share * this.plotWidth()).toFixed(1)}px)`;
    }

    resize() {
        if (this.parent.clientWidth === this.width) return;
        this.plot.setSize({ width: this.availableWidth(), height: this.options.height });
        this.placeCursor();
    }

    changeTheme() {
        this.theme = readTheme();
        this.plot.redraw(false, true);
    }
}

/// Where the axis of a tilt has its marks, in degrees. Near 0 they are farther apart.
const tiltMarks = [0, 1, 2, 5, 10, 20, 45, 90, 180];
const lengthMarks = [0, 0.5, 0.8, 0.9, 1, 1.1, 1.2, 1.5, 2, 4, 8, 16];

/** The marks that are at least `apart` pixels from the one before. */
function spaced(u, marks, apart) {
    const found = [];
    for (const mark of marks) {
        if (mark < u.scales.y.min - 1e-9 || mark > u.scales.y.max + 1e-9) continue;
        const last = found[found.length - 1];
        if (last === undefined || Math.abs(u.valToPos(mark, "y") - u.valToPos(last, "y")) >= apart)
            found.push(mark);
    }
    return found;
}

/** A scale that is even near 0 and compressed farther away, so that the tolerance stays visible. */
export function tiltScale(highest) {
    return {
        distr: 100,
        fwd: (degrees) => Math.asinh(degrees),
        bwd: (height) => Math.sinh(height),
        range: [-0.2, highest],
    };
}

export const tiltAxis = {
    splits: (u) => spaced(u, tiltMarks, 15),
    values: (u, splits) => splits.map((degrees) => `${degrees}°`),
};

/** A scale that is even near 1 g and compressed farther away. */
export function lengthScale(least, most) {
    const even = 0.1;
    return {
        distr: 100,
        fwd: (length) => Math.asinh((length - 1) / even),
        bwd: (height) => 1 + even * Math.sinh(height),
        range: [Math.min(0.8, least), Math.max(1.25, most)],
    };
}

export const lengthAxis = {
    splits: (u) => spaced(u, lengthMarks, 13),
    values: (u, splits) => splits.map((length) => `${length} g`),
};

/** The smallest and the largest number of a column; absent ones are left out. */
export function extremes(column) {
    let least = Infinity;
    let most = -Infinity;
    for (const value of column) {
        if (value === null) continue;
        if (value < least) least = value;
        if (value > most) most = value;
    }
    return [least, most];
}
