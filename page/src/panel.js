/// What the panels of the page share: a status, a progress bar and one place for what went wrong.
import { make } from "../../report/page/src/dom.js";

export class Panel {
    /** `element` is the section of the panel. */
    constructor(element) {
        this.element = element;
        this.attempts = 0;
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
    }

    /** Runs `work`. If it fails, says why, and all that was shown stays. Returns whether it succeeded. */
    async attempt(work) {
        this.complain("");
        this.countAttempts(1);
        try {
            await work();
            return true;
        } catch (error) {
            this.tell("");
            this.complain(error.message);
            return false;
        } finally {
            this.showProgress(undefined);
            this.countAttempts(-1);
        }
    }

    countAttempts(change) {
        this.attempts += change;
        this.element.setAttribute("aria-busy", String(this.attempts > 0));
    }
}
