/// Makes dist/page.html: the script and its library, the style and the page in one file.
import { mkdirSync, readFileSync, writeFileSync } from "node:fs";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";
import { bundled, filled, policy } from "./bundle.js";

const here = dirname(fileURLToPath(import.meta.url));
const target = process.argv[2] ?? join(here, "dist/page.html");

const licence = readFileSync(join(here, "node_modules/uplot/LICENSE"), "utf8").trim();
const code = await bundled(join(here, "src/page.js"));
const script = `/* The charts are drawn by uPlot.\n\n${licence}\n*/\n${code}`;
const style = await bundled(join(here, "src/page.css"));
const page = filled(readFileSync(join(here, "index.html"), "utf8"), {
    POLICY: policy(script, style),
    STYLE: style,
    SCRIPT: script,
});
mkdirSync(dirname(target), { recursive: true });
writeFileSync(target, page);
