/// Makes dist/page.html: the script and its library, the style and the page in one file.
import { createHash } from "node:crypto";
import { mkdirSync, readFileSync, writeFileSync } from "node:fs";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";
import { build } from "esbuild";

const here = dirname(fileURLToPath(import.meta.url));
const target = process.argv[2] ?? join(here, "dist/page.html");

async function bundled(entry) {
    const result = await build({
        entryPoints: [join(here, "src", entry)],
        absWorkingDir: here,
        bundle: true,
        minify: true,
        format: "iife",
        target: "es2020",
        charset: "utf8",
        legalComments: "none",
        write: false,
    });
    return result.outputFiles[0].text.trim();
}

const digest = (text) => `'sha256-${createHash("sha256").update(text).digest("base64")}'`;

const licence = readFileSync(join(here, "node_modules/uplot/LICENSE"), "utf8").trim();
const script = `/* The charts are drawn by uPlot.\n\n${licence}\n*/\n${await bundled("page.js")}`;
const style = await bundled("page.css");
// Only this script and this style may run, and nothing may be fetched from anywhere.
const policy =
    `default-src 'none'; script-src ${digest(script)}; style-src ${digest(style)}; ` +
    `img-src data:; base-uri 'none'; form-action 'none'`;
const parts = { POLICY: policy, STYLE: style, SCRIPT: script };
const page = readFileSync(join(here, "index.html"), "utf8").replace(
    /@(POLICY|STYLE|SCRIPT)@/g,
    (_, name) => parts[name],
);
mkdirSync(dirname(target), { recursive: true });
writeFileSync(target, page);
