/// Makes build-page/noctara.html: the page, its scripts, its style and the program in one file.
import { readFileSync, writeFileSync } from "node:fs";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";
import { bundled, bundledWithCharts, pageOf } from "../report/page/bundle.js";

const here = dirname(fileURLToPath(import.meta.url));
const built = join(here, "../build-page");

const page = pageOf(join(here, "index.html"), {
    script: await bundledWithCharts(join(here, "src/app.js")),
    style: await bundled(join(here, "src/page.css")),
    parts: {
        WORKER: await bundled(join(here, "src/worker.js"), {
            alias: { "noctara-page": join(built, "noctara-page.js") },
        }),
        PROGRAM: readFileSync(join(built, "noctara-page.wasm")).toString("base64"),
    },
    // The worker is a script of the page, and it compiles the program.
    more: { scripts: " 'wasm-unsafe-eval'", directives: "; worker-src blob:" },
});
writeFileSync(join(built, "noctara.html"), page);
