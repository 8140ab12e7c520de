/// The program in its worker, as functions that return promises.

export class Program {
    /** `script` is the text of the worker, `binary` the content of the .wasm file. */
    constructor(script, binary) {
        const url = URL.createObjectURL(new Blob([script], { type: "text/javascript" }));
        this.worker = new Worker(url);
        this.waiting = new Map();
        this.nextId = 1;
        this.worker.onmessage = ({ data }) => this.answered(data);
        this.worker.onerror = (event) => this.failed(event.message);
        this.worker.postMessage({ binary }, [binary.buffer]);
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

    failed(message) {
        for (const { reject } of this.waiting.values())
            reject(new Error(`The program does not run in this browser: ${message}`));
        this.waiting.clear();
    }

    /** Calls a function of noctara.js. `progress(share)`, if given, becomes its last argument. */
    ask(name, args, progress) {
        return new Promise((resolve, reject) => {
            const id = this.nextId++;
            this.waiting.set(id, { resolve, reject, progress });
            this.worker.postMessage({ id, name, args, tellProgress: progress !== undefined });
        });
    }
}
