/// Makes build-page/noctara.html: the page, its scripts, its style and the program in one file.
import { readFileSync, writeFileSync } from "node:fs";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";
import { bundled, filled, policy } from "../report/page/bundle.js";

const here = dirname(fileURLToPath(import.meta.url));
const built = join(here, "../build-page");

const licence = readFileSync(join(here, "../report/page/node_modules/uplot/LICENSE"), "utf8").trim();
const script = `/* The charts are drawn by uPlot.\n\n${licence}\n*/\n${await bundled(join(here, "src/app.js"))}`;
const style = await bundled(join(here, "src/page.css"));
const page = filled(readFileSync(join(here, "index.html"), "utf8"), {
    // The program is compiled by the worker, whose script is in the page, too.
    POLICY: policy(script, style, { scripts: " 'wasm-unsafe-eval'", directives: "; worker-src blob:" }),
    STYLE: style,
    WORKER: await bundled(join(here, "src/worker.js"), {
        alias: { "noctara-page": join(built, "noctara-page.js") },
    }),
    PROGRAM: readFileSync(join(built, "noctara-page.wasm")).toString("base64"),
    SCRIPT: script,
});
writeFileSync(join(built, "noctara.html"), page);
