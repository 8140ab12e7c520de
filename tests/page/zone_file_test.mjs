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
function localTimes(instants, environment, format = "+%F %T %z") {
    const lines = instants.map((seconds) => `@${seconds}\n`).join("");
    return execFileSync("date", ["-f", "-", format], {
        input: lines,
        encoding: "utf8",
        env: { PATH: process.env.PATH, ...environment },
    });
}

/** The local times of the instants, as Node.js tells them. The Swedish form is that of date's %F %T. */
function localTimesOfNode(instants, zone) {
    const format = new Intl.DateTimeFormat("sv-SE", { timeZone: zone, dateStyle: "short", timeStyle: "medium" });
    return instants.map((seconds) => `${format.format(seconds * 1000)}\n`).join("");
}

const zones = ["Europe/Paris", "America/St_Johns", "Australia/Lord_Howe", "Asia/Kathmandu",
    "Africa/Casablanca", "Pacific/Apia", "America/Sao_Paulo", "UTC"];

function written(zone) {
    const file = join(folder, zone);
    mkdirSync(dirname(file), { recursive: true });
    writeFileSync(file, zoneFile(zone));
    return { TZ: `:${file}` };
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

for (const zone of zones) {
    test(`${zone} has the local times of the system`, () =>
        assert.equal(localTimes(instants(), written(zone)), localTimes(instants(), { TZ: zone })));

    test(`${zone} has the local times of Node.js in later years`, () => {
        const hours = 61; // Another hour of the day each time.
        const later = [];
        for (let at = Date.UTC(2020, 0, 1); at < Date.UTC(2099, 11, 31); at += hours * 3600 * 1000) later.push(at / 1000);
        assert.equal(localTimes(later, written(zone), "+%F %T"), localTimesOfNode(later, zone));
    });
}

test("a name that is no zone has no file", () => {
    assert.equal(zoneFile("Europe/Nowhere"), null);
    assert.equal(zoneFile(""), null);
});
