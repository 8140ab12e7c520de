/// Bundles scripts and styles into single pages, and writes the pages' policies.
import { createHash } from "node:crypto";
import { readFileSync } from "node:fs";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";
import { build } from "esbuild";

const here = dirname(fileURLToPath(import.meta.url));

/** The text of a script or of a style, with all that it imports. `options` are more of esbuild's. */
export async function bundled(entry, options = {}) {
    const result = await build({
        entryPoints: [entry],
        bundle: true,
        minify: true,
        format: "iife",
        target: "es2020",
        charset: "utf8",
        legalComments: "none",
        write: false,
        ...options,
    });
    return result.outputFiles[0].text.trim();
}

const digest = (text) => `'sha256-${createHash("sha256").update(text).digest("base64")}'`;

/** A script with the charts, and the licence of the library that draws them. */
export async function bundledWithCharts(entry) {
    const licence = readFileSync(join(here, "node_modules/uplot/LICENSE"), "utf8").trim();
    return `/* The charts are drawn by uPlot.\n\n${licence}\n*/\n${await bundled(entry)}`;
}

/**
 * Returns a Content-Security-Policy. It allows this script and this style only, and forbids all requests.
 * `scripts` has further sources of scripts, and `directives` has further directives.
 */
function policyFor(script, style, { scripts = "", directives = "" } = {}) {
    return (
        `default-src 'none'; script-src ${digest(script)}${scripts}; style-src ${digest(style)}; ` +
        `img-src data:; base-uri 'none'; form-action 'none'${directives}`
    );
}

/** A template in which each @NAME@ is replaced by the part of that name. */
const filled = (template, parts) => template.replace(/@([A-Z]+)@/g, (_, name) => parts[name]);

/**
 * Returns the text of a page. The template contains @HEAD@, @SCRIPT@, and a @NAME@ for each of `parts`. `more`
 * extends the policy, as in policyFor.
 */
export function pageOf(template, { script, style, parts = {}, more = {} }) {
    const head = readFileSync(join(here, "head.html"), "utf8");
    const HEAD = filled(head, { POLICY: policyFor(script, style, more), STYLE: style });
    return filled(readFileSync(template, "utf8"), { HEAD, SCRIPT: script, ...parts });
}
