/// Bundles scripts and styles into single pages, and writes the pages' policies.
import { createHash } from "node:crypto";
import { build } from "esbuild";

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

/**
 * A Content-Security-Policy under which only this script and this style run, and nothing may be fetched
 * from anywhere. `more` has further sources for scripts, and further directives.
 */
export function policy(script, style, { scripts = "", directives = "" } = {}) {
    return (
        `default-src 'none'; script-src ${digest(script)}${scripts}; style-src ${digest(style)}; ` +
        `img-src data:; base-uri 'none'; form-action 'none'${directives}`
    );
}

/** The template with each @NAME@ replaced by the part of that name. */
export function filled(template, parts) {
    return template.replace(/@([A-Z]+)@/g, (_, name) => parts[name]);
}
