/// The part of the time axis that the charts show, and the cursor that they share.

/// Zooming in ends here. In seconds.
const shortestView = 10;

export class View {
    /** The whole axis runs from 0 to `end`. */
    constructor(end) {
        this.end = Math.max(end, shortestView);
        this.from = 0;
        this.to = this.end;
        this.cursor = 0;
        this.observers = [];
    }

    /** Calls `moved(what)` after each change; `what` is "view" or "cursor". */
    observe(moved) {
        this.observers.push(moved);
    }

    tell(what) {
        for (const moved of this.observers) moved(what);
    }

    show(from, to) {
        const span = Math.min(Math.max(to - from, shortestView), this.end);
        const middle = (from + to) / 2;
        this.from = Math.min(Math.max(middle - span / 2, 0), this.end - span);
        this.to = this.from + span;
        this.tell("view");
    }

    /** Shows `factor` times the span; the time `about` stays in its place. */
    zoom(factor, about = this.anchor()) {
        this.show(about - (about - this.from) * factor, about + (this.to - about) * factor);
    }

    /** The cursor if it is in view, or the middle. */
    anchor() {
        return this.cursor >= this.from && this.cursor <= this.to
            ? this.cursor
            : (this.from + this.to) / 2;
    }

    /** Moves by a share of the span; negative is to earlier times. */
    pan(share) {
        const distance = (this.to - this.from) * share;
        this.show(this.from + distance, this.to + distance);
    }

    showAll() {
        this.show(0, this.end);
    }

    /** Moves the cursor, and the view with it if the cursor would leave it. */
    pointAt(time) {
        this.cursor = Math.min(Math.max(time, 0), this.end);
        const span = this.to - this.from;
        if (this.cursor < this.from || this.cursor > this.to)
            this.show(this.cursor - span / 2, this.cursor + span / 2);
        this.tell("cursor");
    }
}
