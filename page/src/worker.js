/// The worker that runs the program, so that the page stays responsive. It answers one message after the
/// other.
import makeModule from "noctara-page";
import { startNoctara } from "./noctara.js";

let starting;

/**
 * A message is {binary}, once, or {id, name, args}: a function of noctara.js with its arguments. With
 * tellProgress, the function gets one argument more, which it calls with its progress.
 */
self.onmessage = async ({ data: { binary, id, name, args, tellProgress } }) => {
    if (binary) {
        starting = startNoctara(makeModule, binary);
        return;
    }
    const progress = (share) => self.postMessage({ id, progress: share });
    try {
        const noctara = await starting;
        const result = noctara[name](...args, ...(tellProgress ? [progress] : []));
        self.postMessage({ id, result });
    } catch (error) {
        self.postMessage({ id, error: sentence(error) });
    }
};

/** A message of the program is a sentence. Anything else is a fault of the browser or of the program. */
function sentence(error) {
    if (error instanceof Error && error.name === "Error") return error.message;
    const memory = /memory|allocat/i.test(String(error?.message));
    return memory ? "The memory of this browser is not enough for the file." : `This went wrong: ${error?.message ?? error}`;
}
