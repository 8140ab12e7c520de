/// The command, beside which the tests hold the page's program.
import { execFileSync } from "node:child_process";
import { mkdtempSync, readFileSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";

import { root } from "./program.mjs";

export const folder = mkdtempSync(join(tmpdir(), "noctara-page-"));
process.on("exit", () => rmSync(folder, { recursive: true, force: true }));

/** The output of the command. Exit code 1 is accepted: it found something wrong. */
export function command(...args) {
    try {
        return execFileSync(join(root, "build-tests/noctara"), args, {
            encoding: "utf8",
            maxBuffer: 1 << 28,
            stdio: ["ignore", "pipe", "ignore"],
        });
    } catch (error) {
        if (error.status !== 1) throw error;
        return error.stdout;
    }
}

/** The data of the report that the command writes. */
export function reportData(...args) {
    const page = join(folder, "report.html");
    command(...args, "--report", page);
    const [, data] = readFileSync(page, "utf8").match(/id="data">(.*?)<\/script>/s);
    return JSON.parse(data);
}
