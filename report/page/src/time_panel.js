/// The charts on one time axis, with a cursor and a zoom that they share, by mouse, touch and
/// keyboard.
import { freshId, make } from "./dom.js";
import { onThemeChange } from "./theme.js";

/// How much one step zooms, and which share of the view one step of a pan moves.
const zoomStep = 2;
const panStep = 0.25;

/** `handlers.step(direction)` and `handlers.change(direction)` move the cursor to a neighbour. */
function keyActions(view, handlers) {
    return {
        ArrowLeft: () => handlers.step(-1),
        ArrowRight: () => handlers.step(1),
        PageUp: () => view.pointAt(view.cursor - (view.to - view.from) / 10),
        PageDown: () => view.pointAt(view.cursor + (view.to - view.from) / 10),
        Home: () => handlers.first(),
        End: () => handlers.last(),
        "+": () => view.zoom(1 / zoomStep),
        "=": () => view.zoom(1 / zoomStep),
        "-": () => view.zoom(zoomStep),
        0: () => view.showAll(),
        p: () => handlers.change(-1),
        n: () => handlers.change(1),
    };
}

/** Redraws all charts at most once in a frame. */
function makeRedraw(charts) {
    let asked = false;
    return () => {
        if (asked) return;
        asked = true;
        requestAnimationFrame(() => {
            asked = false;
            for (const chart of charts) chart.redraw();
        });
    };
}

/** The mouse and the fingers: the cursor follows; a wheel with Ctrl and two fingers zoom. */
function followPointers(chart, view) {
    const { over } = chart.plot;
    const timeAt = (event) => {
        const { left, width } = over.getBoundingClientRect();
        return view.from + ((event.clientX - left) / width) * (view.to - view.from);
    };
    const fingers = new Map();
    over.addEventListener("pointermove", (event) => {
        const before = fingers.get(event.pointerId);
        if (event.pointerType === "touch" && fingers.size === 2 && before !== undefined) {
            const other = [...fingers].find(([id]) => id !== event.pointerId)[1];
            const { left, width } = over.getBoundingClientRect();
            const distance = Math.abs(event.clientX - other);
            if (distance > 10 && Math.abs(before - other) > 10) {
                const middle = view.from + (((event.clientX + other) / 2 - left) / width) * (view.to - view.from);
                view.zoom(Math.abs(before - other) / distance, middle);
            }
            fingers.set(event.pointerId, event.clientX);
            return;
        }
        if (before !== undefined) fingers.set(event.pointerId, event.clientX);
        if (event.pointerType !== "touch" || fingers.size === 1) view.pointAt(timeAt(event));
    });
    over.addEventListener("pointerdown", (event) => {
        if (event.pointerType === "touch") fingers.set(event.pointerId, event.clientX);
        view.pointAt(timeAt(event));
    });
    for (const end of ["pointerup", "pointercancel", "pointerleave"])
        over.addEventListener(end, (event) => fingers.delete(event.pointerId));
    over.addEventListener("dblclick", () => view.showAll());
    over.addEventListener(
        "wheel",
        (event) => {
            const sideways = event.shiftKey ? event.deltaY || event.deltaX : event.deltaX;
            if (event.ctrlKey || event.metaKey)
                view.zoom(Math.exp(Math.max(-1, Math.min(1, event.deltaY / 200))), timeAt(event));
            else if (event.shiftKey || Math.abs(event.deltaX) > Math.abs(event.deltaY))
                view.pan(sideways / 800);
            else return;
            event.preventDefault();
        },
        { passive: false },
    );
}

/**
 * The buttons and the charts. `makeCharts(parent)` makes the charts. `describe()` gives the words
 * for the place of the cursor, for a screen reader, and `shown()` those for the part in view. The
 * charts are destroyed when `signal`, which may be absent, aborts.
 */
export function makeTimePanel(view, { makeCharts, handlers, describe, shown, name, whole, signal }) {
    const keysId = freshId("keys");
    const range = make("span", { class: "range" });
    const button = (label, title, act) =>
        make("button", { type: "button", title, "aria-label": title, onclick: act }, label);
    const tools = make(
        "div",
        { class: "tools", role: "group", "aria-label": "Zoom" },
        button("−", "Zoom out", () => view.zoom(zoomStep)),
        button("+", "Zoom in", () => view.zoom(1 / zoomStep)),
        button("◀", "Earlier", () => view.pan(-panStep)),
        button("▶", "Later", () => view.pan(panStep)),
        button(whole, `Show the ${whole.toLowerCase()}`, () => view.showAll()),
        range,
    );
    const stack = make("div", {
        class: "charts",
        tabindex: "0",
        role: "slider",
        "aria-label": name,
        "aria-describedby": keysId,
        "aria-orientation": "horizontal",
        "aria-valuemin": "0",
        "aria-valuemax": String(Math.round(view.end)),
    });
    const box = make("div");
    stack.append(box);
    const keys = make(
        "p",
        { id: keysId, class: "hint" },
        "Drag to zoom, double-click to see all. With Ctrl the mouse wheel zooms, with Shift it scrolls. Keys: ← → reading by reading, + − zoom, Page Up and Page Down, Home and End, 0 shows all",
        handlers.change ? ", n and p go to the next and the previous change." : ".",
    );
    const element = make("div", { class: "time-panel" }, tools, stack, keys);

    const start = () => {
        const charts = makeCharts(box);
        const redraw = makeRedraw(charts);
        const tell = () => {
            stack.setAttribute("aria-valuenow", String(Math.round(view.cursor)));
            stack.setAttribute("aria-valuetext", describe());
        };
        view.observe((what) => {
            if (what === "view") {
                range.textContent = shown();
                redraw();
            } else {
                for (const chart of charts) chart.placeCursor();
                tell();
            }
        });
        for (const chart of charts) followPointers(chart, view);
        const actions = keyActions(view, handlers);
        stack.addEventListener("keydown", (event) => {
            const act = actions[event.key];
            if (!act || event.ctrlKey || event.metaKey || event.altKey) return;
            act();
            event.preventDefault();
        });
        const resizes = new ResizeObserver(() => charts.forEach((chart) => chart.resize()));
        resizes.observe(box);
        onThemeChange(() => charts.forEach((chart) => chart.changeTheme()), signal);
        signal?.addEventListener("abort", () => {
            resizes.disconnect();
            charts.forEach((chart) => chart.plot.destroy());
        });
        range.textContent = shown();
        tell();
    };
    return { element, stack, start };
}
