/// The files of time zones that the page makes, beside those of the system.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { mkdirSync, mkdtempSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { dirname, join } from "node:path";
import { test } from "node:test";

import { zoneFile } from "../../page/src/zone_file.js";

const folder = mkdtempSync(join(tmpdir(), "noctara-zones-"));
process.on("exit", () => rmSync(folder, { recursive: true, force: true }));

/** The local times of the instants, as the system's date command tells them. */
function localTimes(instants, environment) {
    const lines = instants.map((seconds) => `@${seconds}\n`).join("");
    return execFileSync("date", ["-f", "-", "+%F %T %z"], {
        input: lines,
        encoding: "utf8",
        env: { PATH: process.env.PATH, ...environment },
    });
}

/** Every third day, and every hour of two weeks in spring and in autumn. Later years are left out,
    because Node.js and the system may have data of different age. */
function instants() {
    const day = 24 * 3600;
    const found = [];
    for (let at = Date.UTC(1990, 0, 1) / 1000; at < Date.UTC(2020, 0, 1) / 1000; at += 3 * day)
        found.push(at);
    for (const [month, first] of [[2, 24], [9, 24]])
        for (let hour = 0; hour < 14 * 24; ++hour)
            found.push(Date.UTC(2014, month, first, hour) / 1000);
    return found;
}

for (const zone of ["Europe/Paris", "America/St_Johns", "Australia/Lord_Howe", "Asia/Kathmandu",
    "Africa/Casablanca", "Pacific/Apia", "America/Sao_Paulo", "UTC"])
    test(`${zone} has the local times of the system`, () => {
        const file = join(folder, zone);
        mkdirSync(dirname(file), { recursive: true });
        writeFileSync(file, zoneFile(zone));
        assert.equal(localTimes(instants(), { TZ: `:${file}` }), localTimes(instants(), { TZ: zone }));
    });

test("a name that is no zone has no file", () => {
    assert.equal(zoneFile("Europe/Nowhere"), null);
    assert.equal(zoneFile(""), null);
});
