/// The report of a night in a browser.
import assert from "node:assert/strict";
import { readFileSync, statSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { after, before, test } from "node:test";
import {
    coloursOfCharts, cursorTime, folder, launch, noctara, open, pointAt, reasons, reportOf, root,
    settled, shownRange,
} from "./page.mjs";

let browser;
let typical;

before(async () => {
    browser = await launch();
    typical = reportOf("typical");
});

after(() => browser.close());

/** The readings of a trace: local seconds of the day in UTC+1, and degrees off screen down. */
function readingsOfTrace() {
    const trace = join(folder, "trace.jsonl");
    noctara("night", "--trace", trace);
    return readFileSync(trace, "utf8")
        .split("\n")
        .filter((line) => line.includes('"accelerometerData"'))
        .map((line) => {
            const { t, result: [x, y, z] } = JSON.parse(line);
            const clock = new Date((t + 3600) * 1000).toISOString().slice(11, 19);
            return { t, clock, degrees: (Math.acos(z / Math.hypot(x, y, z)) * 180) / Math.PI };
        });
}

test("the page draws its charts, says nothing on the console and asks for nothing", async () => {
    const page = await open(browser, typical);
    for (const colours of await coloursOfCharts(page)) assert.ok(colours > 8, `${colours} colours`);
    assert.match(await page.textContent("h1"), /Saturday, 1 March to Sunday, 2 March 2014/);
    assert.match(await page.textContent(".figures"), /5103, accelerometer on for 1 h 25 min/);
    assert.deepEqual(page.complaints, []);
});

test("the page of a night is below 1.5 MB", () => {
    assert.ok(statSync(typical).size < 1.5e6);
});

test("a chart without its data would be blank", async () => {
    const page = await open(browser, typical);
    await page.evaluate(() => {
        for (const canvas of document.querySelectorAll(".charts canvas"))
            canvas.getContext("2d").clearRect(0, 0, canvas.width, canvas.height);
    });
    assert.deepEqual(await coloursOfCharts(page), [1, 1, 1]);
});

test("the cursor tells the reading that the trace has at that time", async () => {
    const readings = readingsOfTrace();
    const page = await open(browser, typical);
    for (const share of [0.03, 0.106, 0.3, 0.55, 0.878, 0.89]) {
        await pointAt(page, share);
        const clock = await cursorTime(page);
        const day = clock > "12" ? "2014-03-01" : "2014-03-02";
        const time = Date.parse(`${day}T${clock}+01:00`) / 1000;
        const last = readings.filter(({ t }) => t <= time).at(-1);
        assert.equal(await page.textContent(".moment .cycle"), `Reading at ${last.clock}`);
        const told = /([\d.]+)° off/.exec((await reasons(page)).Reading);
        assert.equal(told[1], last.degrees.toFixed(1), `at ${clock}`);
    }
});

test("the arrow keys go from reading to reading and tell the count", async () => {
    const readings = readingsOfTrace();
    const page = await open(browser, typical);
    const third = readings.findIndex(({ clock }) => clock === "23:30:05");
    await page.focus(".charts");
    assert.equal(await cursorTime(page), "23:30:05");
    assert.match((await reasons(page)).Count, /^Reading 3 of 3 in a row: the phone becomes quiet/);
    for (const [steps, key, index] of [[2, "ArrowLeft", third - 2], [3, "ArrowRight", third + 1]]) {
        for (let i = 0; i < steps; ++i) await page.keyboard.press(key);
        assert.equal(await cursorTime(page), readings[index].clock);
    }
    await page.keyboard.press("Home");
    assert.equal(await cursorTime(page), readings[0].clock);
    await page.keyboard.press("End");
    assert.equal(await cursorTime(page), "07:00:02");
    assert.equal((await reasons(page)).Window, "The window is 21:00 to 7:00: outside.");
});

test("the cursor is told to a screen reader", async () => {
    const page = await open(browser, typical);
    const charts = page.getByRole("slider", { name: "Time" });
    await charts.press("Home");
    assert.match(await charts.getAttribute("aria-valuetext"), /^22:30:01\. Not lying screen down: 143\.1°/);
    assert.equal(await charts.getAttribute("aria-valuenow"), "1");
});

test("the keys zoom about the cursor and show all again", async () => {
    const page = await open(browser, typical);
    const all = await shownRange(page);
    assert.equal(all, "22:30 to 08:00 (9 h 30 min)");
    await page.focus(".charts");
    for (let i = 0; i < 4; ++i) await page.keyboard.press("+");
    await settled(page);
    assert.equal(await shownRange(page), "23:26 to 00:01 (35 min 38 s)");
    await page.keyboard.press("-");
    assert.match(await shownRange(page), /1 h 11 min/);
    await page.keyboard.press("0");
    assert.equal(await shownRange(page), all);
});

test("dragging zooms, the wheel with Ctrl zooms, and a double click shows all", async () => {
    const page = await open(browser, typical);
    const all = await shownRange(page);
    const before = await page.screenshot({ clip: await page.locator(".charts").boundingBox() });
    const box = await page.locator(".u-over").first().boundingBox();
    const at = (share) => [box.x + box.width * share, box.y + box.height / 2];
    await page.mouse.move(...at(0.1));
    await page.mouse.down();
    await page.mouse.move(...at(0.15));
    await page.mouse.move(...at(0.2));
    await page.mouse.up();
    await settled(page);
    assert.match(await shownRange(page), /^23:2\d to 00:2\d \((56|57|58) min/);
    assert.notDeepEqual(await page.screenshot({ clip: await page.locator(".charts").boundingBox() }), before);
    await page.keyboard.down("Control");
    await page.mouse.wheel(0, -200);
    await page.keyboard.up("Control");
    await settled(page);
    assert.match(await shownRange(page), /\(2\d min/);
    await page.mouse.dblclick(...at(0.5));
    await settled(page);
    assert.equal(await shownRange(page), all);
});

test("the wheel alone scrolls the page and does not zoom", async () => {
    const page = await open(browser, typical);
    const all = await shownRange(page);
    await pointAt(page, 0.5);
    await page.mouse.wheel(0, 200);
    await page.waitForFunction(() => scrollY > 0);
    assert.equal(await shownRange(page), all);
});

test("a line of the table jumps to its time, by mouse and by keyboard", async () => {
    const page = await open(browser, typical);
    await page.getByText("It plays the return sound").click();
    await settled(page);
    assert.equal(await cursorTime(page), "06:50:09");
    assert.match(await shownRange(page), /^06:47 to 06:52/);
    const first = page.locator(".jump").first();
    await first.focus();
    for (let i = 0; i < 3; ++i) await page.keyboard.press("ArrowDown");
    await page.keyboard.press("Enter");
    assert.equal(await cursorTime(page), "23:30:01");
    assert.equal(await page.evaluate(() => document.activeElement.className), "charts");
});

test("the line of a new state says why", async () => {
    const page = await open(browser, typical);
    const row = page.locator("tr", { hasText: "The phone is back." });
    assert.match(await row.locator(".why").textContent(), /^Three readings in a row\. Not lying screen down: 143\.1° off/);
});

test("n and p go from change to change", async () => {
    const page = await open(browser, typical);
    await page.focus(".charts");
    await page.keyboard.press("n");
    assert.equal(await cursorTime(page), "06:50:00");
    await page.keyboard.press("p");
    await page.keyboard.press("p");
    assert.equal(await cursorTime(page), "23:30:03");
});

test("the table leaves out kinds of lines", async () => {
    const page = await open(browser, typical);
    const rows = page.locator("tbody tr:not(.day)");
    const all = await rows.count();
    await page.getByLabel("Countdown").uncheck();
    assert.equal(await rows.count(), all - 6);
});

test("the page begins with the verdict", async () => {
    const good = await open(browser, typical);
    assert.equal(await good.textContent(".summary.good .verdict"), "Quiet for 7 h 20 min, everything came back.");
    const page = await open(browser, reportOf("held", "scenarios/held-during-a-call.toml"));
    assert.match(await page.textContent(".summary.bad .verdict"), /^Not back: the data rate is 2G since 06:50:05, and was 4G before\./);
});

test("times follow the change to daylight-saving time", async () => {
    const page = await open(browser, reportOf("saving", "scenarios/daylight-saving.toml"));
    await page.focus(".charts");
    await page.keyboard.press("End");
    assert.match(await page.textContent(".moment .day"), /CEST$/);
    await page.keyboard.press("Home");
    assert.match(await page.textContent(".moment .day"), /Saturday, 29 March 2014, CET$/);
    await page.keyboard.press("ArrowRight");
    assert.equal(await cursorTime(page), "22:00:06");
    const clocks = await page.$$eval(".jump", (links) => links.map((link) => link.textContent));
    const story = noctara("night", "scenarios/daylight-saving.toml");
    for (const clock of clocks) assert.ok(story.includes(clock), clock);
});

test("the log lines of a cycle stand beside it", async () => {
    const scenario = readFileSync(join(root, "scenarios/typical-night.toml"), "utf8");
    const file = join(folder, "debug.toml");
    writeFileSync(file, scenario.replace("Debug = false", "Debug = true"));
    const page = await open(browser, reportOf("debug", file));
    const log = await page.textContent(".moment pre");
    assert.match(log, /Noctara : Mode avion/);
    assert.match(log, /About to change airplane mode to ENABLED/);
    assert.ok(!log.includes("Mode normal"));
});

test("texts of a scenario do not become part of the page", async () => {
    const scenario = readFileSync(join(root, "scenarios/applications.toml"), "utf8");
    const evil = "</script><img src=x onerror=alert(1)>";
    const file = join(folder, "evil.toml");
    writeFileSync(file, scenario
        .replaceAll('"Clock"', `"${evil}"`)
        .replaceAll("Debug = false", "Debug = true")
        .replaceAll("com.apple.mobiletimer", `com.apple.${evil}`));
    const report = reportOf("evil", file);
    const page = await open(browser, report);
    await page.waitForTimeout(200);
    assert.ok((await page.textContent("body")).includes(evil));
    assert.equal(await page.locator("img").count(), 0);
    assert.deepEqual(page.complaints, []);
});

test("a script that is not part of the page does not run", async () => {
    const file = join(folder, "changed.html");
    writeFileSync(file, readFileSync(typical, "utf8").replace("</main>", "</main><script>alert(1)</script><img src=x onerror=alert(2)>"));
    const page = await open(browser, file);
    const refused = page.complaints.filter((complaint) => /Content Security Policy/.test(complaint));
    assert.ok(refused.length >= 2, page.complaints.join("; "));
    assert.ok(!page.complaints.some((complaint) => complaint.startsWith("dialog")));
});

test("dark and light have the same page in other colours", async () => {
    const backgrounds = [];
    for (const colorScheme of ["light", "dark"]) {
        const page = await open(browser, typical, { colorScheme });
        backgrounds.push(await page.evaluate(() => getComputedStyle(document.body).backgroundColor));
        for (const colours of await coloursOfCharts(page)) assert.ok(colours > 8);
    }
    assert.notEqual(backgrounds[0], backgrounds[1]);
    const page = await open(browser, typical);
    const pixels = () => page.$eval(".charts canvas", (canvas) => canvas.toDataURL());
    const light = await pixels();
    await page.emulateMedia({ colorScheme: "dark" });
    await settled(page);
    assert.notEqual(await pixels(), light);
});

/** The contrast of two colours, 1 to 21. */
function contrast(one, other) {
    const luminance = (colour) => {
        const [r, g, b] = colour.match(/\d+/g).slice(0, 3).map((part) => {
            const share = part / 255;
            return share <= 0.04045 ? share / 12.92 : ((share + 0.055) / 1.055) ** 2.4;
        });
        return 0.2126 * r + 0.7152 * g + 0.0722 * b;
    };
    const [dark, bright] = [luminance(one), luminance(other)].sort((a, b) => a - b);
    return (bright + 0.05) / (dark + 0.05);
}

test("texts have enough contrast", async () => {
    for (const colorScheme of ["light", "dark"]) {
        const page = await open(browser, typical, { colorScheme });
        const pairs = await page.$$eval(".sub, .moment dt, .moment dd, .jump, .hint, .figures dd, .brand", (texts) =>
            texts.map((text) => {
                let behind = text;
                while (getComputedStyle(behind).backgroundColor === "rgba(0, 0, 0, 0)") behind = behind.parentElement;
                return [text.className, getComputedStyle(text).color, getComputedStyle(behind).backgroundColor];
            }));
        for (const [name, text, behind] of pairs)
            assert.ok(contrast(text, behind) >= 4.5, `${colorScheme} ${name}: ${text} on ${behind}`);
    }
});

test("a phone of 360 pixels shows the page without scrolling sideways", async () => {
    for (const [name, file] of [["typical", typical], ["applications", reportOf("applications", "scenarios/applications.toml")]]) {
        const page = await open(browser, file, { width: 360, height: 740, hasTouch: true });
        const [needed, available] = await page.evaluate(() => [document.documentElement.scrollWidth, innerWidth]);
        assert.ok(needed <= available, `${name}: ${needed} of ${available} pixels`);
        for (const colours of await coloursOfCharts(page)) assert.ok(colours > 8);
        assert.deepEqual(page.complaints, []);
    }
});

test("the tab key reaches the zoom, the charts and the table, with a visible focus", async () => {
    const page = await open(browser, typical);
    const reached = [];
    for (let i = 0; i < 12; ++i) {
        await page.keyboard.press("Tab");
        reached.push(await page.evaluate(() => {
            const { activeElement: element } = document;
            return `${element.className || element.title || element.type} ${getComputedStyle(element).outlineStyle}`;
        }));
    }
    assert.deepEqual(reached.slice(0, 6).map((name) => name.split(" ").at(-1)), Array(6).fill("solid"));
    assert.ok(reached.includes("charts solid"), reached.join(", "));
    assert.ok(reached.includes("jump solid"), reached.join(", "));
    assert.equal(reached.filter((name) => name.startsWith("jump")).length, 1);
});

/** The data of a report, repeated for many nights. */
function repeated(file, nights) {
    const page = readFileSync(file, "utf8");
    const [, opening, text, rest] = /^(.*<script type="application\/json" id="data">)(.*?)(<\/script>.*)$/s.exec(page);
    const data = JSON.parse(text);
    const span = 86400;
    const later = (steps) => Array.from({ length: nights }, (_, night) => steps.map(([at, ...others]) => [at + night * span, ...others])).flat();
    const { cycles } = data;
    const first = [...cycles.times];
    first[0] += span * 1000 - cycles.times.reduce((sum, one) => sum + one, 0);
    for (const column of ["outcomes", "tilts", "lengths", "counts", "logged", "times"]) {
        const following = column === "times" ? first : cycles[column];
        cycles[column] = [cycles[column], ...Array(nights - 1).fill(following)].flat();
    }
    // The same night would be one long line; with a little noise each reading is drawn.
    cycles.tilts = cycles.tilts.map((tilt, index) => tilt === null ? null : tilt + (index * 7919 % 100) / 100);
    for (const lane of Object.keys(data.lanes)) data.lanes[lane] = later(data.lanes[lane]);
    for (const marks of ["idleSleeps", "wakeUps", "cues", "applications", "story"]) data[marks] = later(data[marks]);
    data.end = (nights - 1) * span + data.end;
    const changed = join(folder, `${nights}-nights.html`);
    writeFileSync(changed, opening + JSON.stringify(data) + rest);
    return changed;
}

test("30 nights scroll and zoom smoothly", async (t) => {
    const file = repeated(typical, 30);
    const started = Date.now();
    const page = await open(browser, file);
    t.diagnostic(`page of ${(statSync(file).size / 1e6).toFixed(1)} MB, drawn in ${Date.now() - started} ms`);
    const times = await page.evaluate(async () => {
        const button = (title) => document.querySelector(`[title="${title}"]`);
        const found = [];
        for (const title of [...Array(5).fill("Zoom in"), ...Array(4).fill("Later"), ...Array(5).fill("Zoom out")]) {
            const begin = performance.now();
            button(title).click();
            await new Promise((done) => requestAnimationFrame(() => setTimeout(done)));
            found.push(performance.now() - begin);
        }
        return found.sort((a, b) => a - b);
    });
    const median = times[times.length >> 1];
    t.diagnostic(`a redraw takes ${median.toFixed(0)} ms (median), ${times.at(-1).toFixed(0)} ms at most`);
    assert.ok(median < 1000);
    assert.ok((await page.locator("tbody tr").count()) < 1000);
    assert.deepEqual(page.complaints, []);
});
