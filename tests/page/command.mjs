/// The command, beside which the tests hold the page's program.
import { execFileSync } from "node:child_process";
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
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

/** The text of a random scenario. */
export const randomScenario = (seed) =>
    execFileSync(join(root, "build-tests/tests/noctara-random-scenario"), [String(seed)], { encoding: "utf8" });

function fileOfScenario(scenario) {
    const file = join(folder, "night.toml");
    writeFileSync(file, scenario);
    return file;
}

/** The trace that the command writes of a scenario, which is a text. */
export function traceOfCommand(scenario) {
    const trace = join(folder, "night.jsonl");
    command("night", fileOfScenario(scenario), "--quiet", "--trace", trace);
    return readFileSync(trace, "utf8");
}

/** The data of the report of a night whose scenario is a text. */
export const nightData = (scenario) => reportData("night", fileOfScenario(scenario));

/** The data of the report that the command writes. */
export function reportData(...args) {
    const page = join(folder, "report.html");
    command(...args, "--report", page);
    const [, data] = readFileSync(page, "utf8").match(/id="data">(.*?)<\/script>/s);
    return JSON.parse(data);
}
