/// The base of the panels. A panel has a status, a progress bar and an error message. It serves the user's
/// requests in their order.
import { make } from "../../report/page/src/dom.js";

export class Panel {
    /** `element` is the section of the panel. */
    constructor(element) {
        this.element = element;
        this.attempts = 0;
        this.last = Promise.resolve();
        this.status = make("p", { class: "status", role: "status" });
        this.bar = make("progress", { max: "1", "aria-label": "Progress", hidden: true });
        this.alert = make("p", { class: "wrong", role: "alert", hidden: true });
        this.notices = make("div", { class: "notices" }, this.bar, this.status, this.alert);
    }

    tell(text) {
        this.status.textContent = text;
    }

    /** Undefined hides the bar. */
    showProgress(share) {
        this.bar.hidden = share === undefined;
        this.bar.value = share ?? 0;
    }

    /** One sentence about what went wrong. An empty one takes it away. */
    complain(sentence) {
        this.alert.textContent = sentence;
        this.alert.hidden = sentence === "";
        if (sentence) this.alert.scrollIntoView({ block: "nearest" });
    }

    /** Returns a signal for a new drawing. The signal aborts when the panel draws again. */
    signalForDrawing() {
        this.drawing?.abort();
        this.drawing = new AbortController();
        return this.drawing.signal;
    }

    /**
     * Runs `work`. If it fails, says why, and all that was shown stays. Work that was aborted says
     * nothing. Returns whether it succeeded.
     */
    async run(work) {
        this.countAttempts(1);
        try {
            await work();
            return true;
        } catch (error) {
            if (error.name !== "AbortError") {
                this.tell("");
                this.complain(error.message);
            }
            return false;
        } finally {
            this.countAttempts(-1);
        }
    }

    /** Runs what the user asks for, and removes an older complaint. */
    attempt(work) {
        this.complain("");
        return this.run(work);
    }

    /** As `attempt`, after all earlier work of `inTurn` and `follow`. */
    inTurn(work) {
        this.complain("");
        return this.follow(work);
    }

    /** As `run`, after all earlier work of `inTurn` and `follow`. */
    follow(work) {
        const turn = this.last.then(() => this.run(work));
        this.last = turn;
        this.countAttempts(1);
        turn.then(() => this.countAttempts(-1));
        return turn;
    }

    countAttempts(change) {
        this.attempts += change;
        this.element.setAttribute("aria-busy", String(this.attempts > 0));
    }
}
