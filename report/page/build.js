/// Makes dist/page.html: the script and its library, the style and the page in one file.
import { mkdirSync, writeFileSync } from "node:fs";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";
import { bundled, bundledWithCharts, pageOf } from "./bundle.js";

const here = dirname(fileURLToPath(import.meta.url));
const target = process.argv[2] ?? join(here, "dist/page.html");

const script = await bundledWithCharts(join(here, "src/page.js"));
const style = await bundled(join(here, "src/page.css"));
const page = pageOf(join(here, "index.html"), { script, style });
mkdirSync(dirname(target), { recursive: true });
writeFileSync(target, page);
