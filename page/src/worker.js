/// The worker that runs the program, so that the page stays responsive. It answers one message after the
/// other.
import makeModule from "noctara-page";
import { startNoctara } from "./noctara.js";

let start;
let starting;

/**
 * A message is {binary}, once, or {id, name, args}: a function of noctara.js with its arguments. With
 * tellProgress, the function gets one argument more, which it calls with its progress.
 */
self.onmessage = async ({ data: { binary, id, name, args, tellProgress } }) => {
    if (binary) {
        start = () => startNoctara(makeModule, binary);
        starting = start();
        starting.catch(() => {}); // The error is told with the answer to each question.
        return;
    }
    const progress = (share) => self.postMessage({ id, progress: share });
    let noctara;
    try {
        noctara = await starting;
    } catch (error) {
        self.postMessage({ id, error: `This browser cannot run the program; use one of 2023 or later (${error.message}).` });
        return;
    }
    try {
        const result = noctara[name](...args, ...(tellProgress ? [progress] : []));
        self.postMessage({ id, result });
    } catch (error) {
        self.postMessage({ id, error: sentence(error) });
        // After a crash the program is started again.
        if (error instanceof WebAssembly.RuntimeError) starting = start();
    }
};

/** A message of the program is a sentence. Anything else is a fault of the browser or of the program. */
function sentence(error) {
    return error?.constructor === Error ? error.message : `The program failed: ${error?.message ?? error}.`;
}
