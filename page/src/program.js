/// The program in its worker, as functions that return promises.

export class Program {
    /** `script` is the text of the worker, `binary` the content of the .wasm file. */
    constructor(script, binary) {
        this.url = URL.createObjectURL(new Blob([script], { type: "text/javascript" }));
        this.binary = binary;
        this.waiting = new Map(); // By id, in the order in which they were asked.
        this.nextId = 1;
        this.start();
    }

    start() {
        this.worker = new Worker(this.url);
        this.worker.onmessage = ({ data }) => this.answered(data);
        this.worker.onerror = (event) => this.failed(event.message);
        this.worker.postMessage({ binary: this.binary });
    }

    answered({ id, result, error, progress }) {
        const question = this.waiting.get(id);
        if (progress !== undefined) {
            question.progress?.(progress);
            return;
        }
        this.waiting.delete(id);
        if (error === undefined) question.resolve(result);
        else question.reject(new Error(error));
    }

    /** The worker has ended. The next question begins with another one. */
    failed(message) {
        const questions = [...this.waiting.values()];
        this.waiting.clear();
        this.start();
        for (const { reject } of questions) reject(new Error(`The program failed in this browser: ${message}.`));
    }

    /**
     * Calls a function of noctara.js. `progress(share)`, if given, becomes its last argument. When
     * `signal` aborts, the question is given up: the worker is ended, and another one gets the
     * questions that still wait.
     */
    ask(name, args, { progress, signal } = {}) {
        return new Promise((resolve, reject) => {
            const id = this.nextId++;
            const message = { id, name, args, tellProgress: progress !== undefined };
            this.waiting.set(id, { resolve, reject, progress, message });
            this.worker.postMessage(message);
            signal?.addEventListener("abort", () => {
                if (!this.waiting.delete(id)) return;
                this.worker.terminate();
                this.start();
                for (const question of this.waiting.values()) this.worker.postMessage(question.message);
                reject(new DOMException("given up", "AbortError"));
            });
        });
    }
}
