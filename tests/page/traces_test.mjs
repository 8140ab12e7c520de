/// The nights of the page's program beside those of the command.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { mkdtempSync, readdirSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { test } from "node:test";

import { noctara, root } from "./program.mjs";

const command = join(root, "build-tests/noctara");
const randomScenario = join(root, "build-tests/tests/noctara-random-scenario");
const folder = mkdtempSync(join(tmpdir(), "noctara-page-"));
process.on("exit", () => rmSync(folder, { recursive: true, force: true }));

/** The trace that the command writes. Exit code 1 is accepted: the night has a fault. */
function traceOfCommand(scenario) {
    const file = join(folder, "night.toml");
    const trace = join(folder, "night.jsonl");
    writeFileSync(file, scenario);
    try {
        execFileSync(command, ["night", file, "--quiet", "--trace", trace], { stdio: "ignore" });
    } catch (error) {
        if (error.status !== 1) throw error;
    }
    return readFileSync(trace, "utf8");
}

function assertSameTrace(scenario) {
    const ours = noctara.traceOfNight(scenario).split("\n");
    const commands = traceOfCommand(scenario).split("\n");
    const different = commands.findIndex((line, i) => line !== ours[i]);
    if (different >= 0)
        assert.equal(ours[different], commands[different], `line ${different + 1}`);
    assert.equal(ours.length, commands.length);
    assert.ok(commands.length > 2, "the night has calls");
}

const readyMade = join(root, "scenarios");
for (const name of readdirSync(readyMade).filter((file) => file.endsWith(".toml")))
    test(`the ready-made night ${name} has the trace of the command`, () =>
        assertSameTrace(readFileSync(join(readyMade, name), "utf8")));

test("50 random nights have the traces of the command", () => {
    for (let seed = 1; seed <= 50; ++seed)
        assertSameTrace(execFileSync(randomScenario, [String(seed)], { encoding: "utf8" }));
});

test("a scenario that is wrong is refused in the words of the command", () => {
    assert.throws(() => noctara.traceOfNight('timezone = "Europe/Pari"\n'), {
        message: /^the scenario:1:12: .*did you mean "Europe\/Paris"\?$/,
    });
    assert.throws(() => noctara.traceOfNight("[start"), { message: /^the scenario:1:/ });
});
