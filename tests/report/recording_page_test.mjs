/// The report of a recording in a browser.
import assert from "node:assert/strict";
import { statSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { after, before, test } from "node:test";
import { coloursOfCharts, cursorTime, folder, launch, noctara, open, reasons, settled } from "./page.mjs";

let browser;

before(async () => {
    browser = await launch();
});

after(() => browser.close());

/** A recording with this many samples a second: `tilt(second)` in degrees off screen down. */
function recordingOf(name, seconds, rate, tilt) {
    const lines = ["time,x (g),y (g),z (g)"];
    for (let i = 0; i < seconds * rate; ++i) {
        const angle = (tilt(i / rate) * Math.PI) / 180;
        lines.push(`${i / rate},${Math.sin(angle).toFixed(6)},0,${Math.cos(angle).toFixed(6)}`);
    }
    const file = join(folder, `${name}.csv`);
    writeFileSync(file, lines.join("\n") + "\n");
    const report = join(folder, `${name}.html`);
    noctara("detect", file, "--axes", "ios", "--report", report);
    return report;
}

test("a recording shows its tilt, its advice and what passes", async () => {
    const page = await open(browser, recordingOf("lying", 120, 10, (second) => (second < 20 ? 60 : 1.5 + 0.1 * Math.sin(second))));
    for (const colours of await coloursOfCharts(page)) assert.ok(colours > 8, `${colours} colours`);
    assert.match(await page.textContent(".verdict"), /Sensitivity/);
    await page.focus(".charts");
    await page.keyboard.press("End");
    assert.equal(await cursorTime(page), "00:01:59");
    const told = await reasons(page);
    assert.match(told.Tilt, /^1\.\d\d° off the vertical, screen down$/);
    assert.match(told.Passes, /^at Sensitivity 0 to [5-7]$/);
    await page.keyboard.press("Home");
    assert.equal((await reasons(page)).Passes, "at no Sensitivity");
    assert.deepEqual(page.complaints, []);
});

test("a long recording is shown by the lowest and the highest of groups", async () => {
    const report = recordingOf("long", 2000, 50, (second) => (Math.abs(second - 1000) < 0.05 ? 80 : 1));
    assert.ok(statSync(report).size < 1.5e6);
    const page = await open(browser, report);
    assert.match(await page.textContent(".remarks"), /stands for 5 samples/);
    await page.focus(".charts");
    for (let i = 0; i < 6; ++i) await page.keyboard.press("+");
    await settled(page);
    for (const colours of await coloursOfCharts(page)) assert.ok(colours > 8);
    assert.deepEqual(page.complaints, []);
});

test("a phone of 360 pixels shows a recording without scrolling sideways", async () => {
    const page = await open(browser, recordingOf("narrow", 30, 10, () => 1), { width: 360, height: 740 });
    assert.ok(await page.evaluate(() => document.documentElement.scrollWidth <= innerWidth));
});
