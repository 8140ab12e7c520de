/// The nights of the page's program beside those of the command.
import assert from "node:assert/strict";
import { readdirSync, readFileSync } from "node:fs";
import { join } from "node:path";
import { test } from "node:test";

import { nightData, randomScenario, traceOfCommand } from "./command.mjs";
import { noctara, root } from "./program.mjs";

function assertSameTrace(scenario) {
    const ours = noctara.traceOfNight(scenario).split("\n");
    const commands = traceOfCommand(scenario).split("\n");
    const different = commands.findIndex((line, i) => line !== ours[i]);
    if (different >= 0)
        assert.equal(ours[different], commands[different], `line ${different + 1}`);
    assert.equal(ours.length, commands.length);
    assert.ok(commands.length > 2, "the night has calls");
}

/** The page names the zones by their offsets. */
function withoutZoneNames(night) {
    return { ...night, localTimes: night.localTimes.map(([from, base]) => [from, base]) };
}

function assertSameReport(scenario) {
    assert.deepEqual(
        withoutZoneNames(noctara.night(scenario)),
        withoutZoneNames(nightData(scenario)),
    );
}

const readyMade = join(root, "scenarios");
for (const name of readdirSync(readyMade).filter((file) => file.endsWith(".toml"))) {
    const scenario = readFileSync(join(readyMade, name), "utf8");
    test(`the ready-made night ${name} has the trace of the command`, () => assertSameTrace(scenario));
    test(`the ready-made night ${name} has the report of the command`, () =>
        assertSameReport(scenario));
}

test("50 random nights have the traces of the command", () => {
    for (let seed = 1; seed <= 50; ++seed) assertSameTrace(randomScenario(seed));
});

test("10 random nights have the reports of the command", () => {
    for (let seed = 101; seed <= 110; ++seed) assertSameReport(randomScenario(seed));
});

test("a process that is not SpringBoard has the report of the command", () =>
    assertSameReport('[phone]\nbundle = "com.apple.Maps"\n'));

test("a scenario that is wrong is refused in the words of the command", () => {
    assert.throws(() => noctara.traceOfNight('timezone = "Europe/Pari"\n'), {
        message: /^the scenario:1:12: .*did you mean "Europe\/Paris"\?$/,
    });
    assert.throws(() => noctara.traceOfNight("[start"), { message: /^the scenario:1:/ });
});
