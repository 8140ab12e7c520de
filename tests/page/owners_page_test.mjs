/// The owner's page in Chromium: what an owner does on it.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { createServer } from "node:http";
import { readdirSync, readFileSync, statSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { after, before, test } from "node:test";
import { createHash } from "node:crypto";
import { gzipSync } from "node:zlib";

import {
    axeFaults, choose, digestInWorker, downloaded, drop, fileOf, give, launch, open, pageFile, played, refusal, told, unfold, verdict,
} from "./browser.mjs";
import { command, folder, randomScenario, reportData, traceOfCommand } from "./command.mjs";
import { noctara, root } from "./program.mjs";

let browser;

before(async () => {
    browser = await launch();
});

after(() => browser.close());

const still = "time (s),x (g),y (g),z (g)\n" + Array.from({ length: 600 }, (_, i) => `${i / 20},0.01,0.02,-0.998\n`).join("");

/** The bytes of a settings file that Python writes. */
function settingsFile(form, content = { Enabled: true, Sensitivity: 12, Unknown: "text", "launch-app-com.apple.Maps": true }) {
    const script = `import json, plistlib, sys; sys.stdout.buffer.write(plistlib.dumps(json.load(sys.stdin), sort_keys=False, fmt=plistlib.FMT_${form}))`;
    return execFileSync("python3", ["-c", script], { input: JSON.stringify(content) });
}

/** A settings file as Python reads it, with the form that it has. */
function readBack(bytes) {
    const script = "import json, plistlib, sys; print(json.dumps(plistlib.loads(sys.stdin.buffer.read())))";
    const content = JSON.parse(execFileSync("python3", ["-c", script], { input: bytes }));
    return { content, form: bytes.subarray(0, 8).toString() === "bplist00" ? "BINARY" : "XML" };
}

test("the page is below 3 MB and asks for nothing, from disk and from a server", async () => {
    assert.ok(statSync(pageFile).size < 3e6);
    const server = createServer((_, response) => response.end(readFileSync(pageFile))).listen(0, "127.0.0.1");
    await new Promise((ready) => server.once("listening", ready));
    try {
        for (const url of [undefined, `http://127.0.0.1:${server.address().port}/`]) {
            const page = await open(browser, { url });
            await give(page, "recording", fileOf("still.csv", still));
            await told(page, "recording", "600 readings");
            await choose(page, "night");
            await played(page);
            assert.match(await verdict(page), /^Quiet for 7 h 20 min/);
            assert.deepEqual(page.complaints, []);
            await page.context().close();
        }
    } finally {
        server.close();
    }
});

test("the policy of the page forbids requests", async () => {
    const page = await open(browser);
    const outcome = await page.evaluate(() => fetch("https://example.com/").then(() => "sent", () => "refused"));
    assert.equal(outcome, "refused");
    assert.match(page.complaints.join("\n"), /Content Security Policy/);
    await page.context().close();
});

for (const [name, file] of [["still.csv", still], ["still.csv.gz", gzipSync(still)]])
    test(`the recording ${name} has the advice of the command, first`, async () => {
        const path = join(folder, name);
        writeFileSync(path, file);
        const page = await open(browser);
        await drop(page, [fileOf(name, file)]);
        await told(page, "recording", "600 readings");
        const lines = await page.$$eval("#recording .result > :first-child .verdict", (all) => all.map((line) => line.textContent));
        const ofCommand = reportData("detect", path).verdict;
        assert.equal(lines.length, ofCommand.length);
        assert.equal(lines[0], ofCommand[0]);
        assert.ok(!lines.some((line) => line.includes("--")));
        assert.deepEqual(page.complaints, []);
        await page.context().close();
    });

// The first byte of these files is for the fuzzer.
for (const name of ["at-rest-screen-up.csv", "walking-stairs.csv"])
    test(`the start of the real recording ${name} has the advice of the command, read in two ways`, async () => {
        const path = join(folder, name);
        writeFileSync(path, readFileSync(join(root, "tests/fuzz/corpus/recordings", name)).subarray(1));
        const page = await open(browser);
        const advice = () => page.$$eval("#recording .verdict", (all) => all.map((line) => line.textContent));
        await give(page, "recording", path);
        await told(page, "recording", "readings");
        const ofCommand = reportData("detect", path).verdict;
        assert.deepEqual(await advice(), ofCommand.map((line) => line.replace("--axes", "the choice “Axes”")));
        await unfold(page, "Read the recording in another way");
        await page.fill("[name=rate]", "1");
        await page.keyboard.press("Tab");
        await page.locator("#recording .remarks", { hasText: "as the choice “Readings a second” says" }).waitFor();
        const slower = reportData("detect", path, "--rate", "1").verdict;
        assert.deepEqual(await advice(), slower.map((line) => line.replace("--axes", "the choice “Axes”")));
        await page.context().close();
    });

test("a recording without times is read when the user says the rate", async () => {
    const page = await open(browser);
    await give(page, "recording", fileOf("still.csv", still));
    await told(page, "recording", "600 readings");
    await give(page, "recording", fileOf("bare.csv", "x,y,z\n" + "0.01,0.02,-0.998\n".repeat(400)));
    assert.match(await refusal(page, "recording"), /^bare\.csv:1: .*the choice “Readings a second”\.?$/);
    await unfold(page, "Read the recording in another way");
    await page.fill("[name=rate]", "20");
    await page.keyboard.press("Tab");
    await told(page, "recording", "400 readings");
    assert.equal(await page.locator("#recording [role=alert]").isVisible(), false);
    await page.context().close();
});

test("a recording of 71 MB leaves the page responsive and tells its progress", async () => {
    const file = join(folder, "long.csv");
    const lines = ["time (s),x (g),y (g),z (g)"];
    for (let i = 0; i < 2_000_000; ++i) lines.push(`${(i / 100).toFixed(2)},0.01230000,0.02340000,-0.99876`);
    writeFileSync(file, lines.join("\n"));
    assert.ok(statSync(file).size > 65e6);
    const page = await open(browser, { clockRuns: true });
    await page.evaluate(() => {
        window.seen = { shares: new Set(), last: performance.now(), longest: 0 };
        const look = () => {
            const bar = document.querySelector("#recording progress");
            const now = performance.now();
            if (!bar.hidden) {
                window.seen.shares.add(bar.value);
                window.seen.longest = Math.max(window.seen.longest, now - window.seen.last);
            }
            window.seen.last = now;
            requestAnimationFrame(look);
        };
        look();
    });
    await give(page, "recording", file);
    await page.locator("#recording progress").waitFor();
    await choose(page, "settings"); // While the file is read.
    await choose(page, "recording");
    await page.locator("#recording .status", { hasText: "2000000 readings" }).waitFor({ timeout: 120_000 });
    const { shares, longest } = await page.evaluate(() => ({ shares: [...window.seen.shares], longest: window.seen.longest }));
    assert.ok(shares.length > 20, `${shares.length} shares`);
    assert.ok(shares.every((share) => share >= 0 && share <= 1));
    // The program works for seconds. Without the worker there would be no frame in this time.
    assert.ok(longest < 1000, `${longest} ms between two frames`);
    await page.context().close();
});

test("rubbish is refused in one sentence, and what was there stays", async () => {
    const page = await open(browser);
    await give(page, "recording", fileOf("still.csv", still));
    await told(page, "recording", "600 readings");
    await give(page, "settings", fileOf("good.plist", settingsFile("XML")));
    await told(page, "settings", "good.plist");
    await choose(page, "night");
    await played(page);
    const shown = () => page.$$eval("#recording .result, #settings .settings, #night .result, #night .events", (all) => all.map((part) => part.textContent));
    const good = await shown();
    const random = Buffer.from(Array.from({ length: 5000 }, (_, i) => (i * 7919 + (i >> 3)) & 255));
    const rubbish = {
        empty: Buffer.alloc(0),
        words: Buffer.from("these are words\nin lines\n"),
        zeros: Buffer.alloc(100_000),
        random,
        picture: readFileSync(join(root, "docs/report.png")),
        page: Buffer.from("<!doctype html><p>x"),
        json: Buffer.from('{"start": 1}'),
        "bad.gz": Buffer.concat([Buffer.from([0x1f, 0x8b, 8, 0]), random]),
        nested: Buffer.from(`<plist>${"<array>".repeat(5000)}`),
        large: Buffer.alloc(3 << 20, "x"),
        "../<img src=x onerror=alert(1)>": Buffer.from("rubbish"),
    };
    for (const [name, bytes] of Object.entries(rubbish))
        for (const panel of ["recording", "settings", "night"]) {
            if (panel === "night" && name === "empty") continue; // A scenario in which all is as usual.
            await give(page, panel, fileOf(name, bytes));
            const sentence = await refusal(page, panel);
            assert.ok(sentence.length > 10 && !sentence.includes("\n"), `${panel}, ${name}: ${sentence}`);
            assert.ok(!/undefined|null|went wrong|RangeError/.test(sentence), `${panel}, ${name}: ${sentence}`);
            assert.deepEqual(await shown(), good, `${panel}, ${name}`);
            await page.evaluate((id) => (document.querySelector(`#${id} > .card [role=alert]`).hidden = true), panel);
        }
    assert.deepEqual(page.complaints, []);
    await page.context().close();
});

test("several files at once are not taken", async () => {
    const page = await open(browser);
    await drop(page, [fileOf("a.csv", still), fileOf("b.csv", still)]);
    assert.equal(await refusal(page, "recording"), "Drop one file at a time.");
    await page.context().close();
});

test("a dropped file goes to the panel that it is for", async () => {
    const page = await open(browser);
    await drop(page, [fileOf("some file", settingsFile("BINARY"))]);
    await told(page, "settings", "some file");
    await drop(page, [fileOf("night.toml", "hours = 1\n")]);
    await told(page, "night", "night.toml");
    await drop(page, [fileOf("walk.csv", still)]);
    await told(page, "recording", "walk.csv");
    await page.context().close();
});

for (const form of ["XML", "BINARY"])
    test(`a settings file in ${form} form is checked, changed and downloaded`, async () => {
        const page = await open(browser);
        const bytes = settingsFile(form);
        const path = join(folder, "phone.plist");
        writeFileSync(path, bytes);
        await give(page, "settings", fileOf("phone.plist", bytes));
        await told(page, "settings", "phone.plist");
        const odd = await page.$$eval("#settings .odd li", (all) => all.map((line) => line.textContent));
        assert.deepEqual(odd, command("settings", path, "check").trim().split("\n"));
        await page.locator("#settings").getByLabel("Sensitivity").fill("3");
        await told(page, "settings", "Sensitivity is 3.");
        await page.locator("#settings").getByLabel("ScreenDown").focus();
        await page.keyboard.press("Space");
        await told(page, "settings", "ScreenDown is off.");
        await page.locator("#settings").getByLabel("Launch another application").fill("a.b");
        await page.keyboard.press("Enter");
        await told(page, "settings", "launch-app-a.b is on.");
        await page.click("#settings [aria-label='Remove com.apple.Maps']");
        await told(page, "settings", "is removed");
        const file = await downloaded(page, "Download the file");
        assert.equal(file.name, "phone.plist");
        assert.deepEqual(readBack(file.bytes), {
            form,
            content: { Enabled: true, Sensitivity: 3, Unknown: "text", ScreenDown: false, "launch-app-a.b": true },
        });
        assert.deepEqual(page.complaints, []);
        await page.context().close();
    });

test("a file that plistutil writes can be changed", async () => {
    const path = join(folder, "util.plist");
    writeFileSync(path, settingsFile("XML"));
    const binary = execFileSync("plistutil", ["-i", path, "-f", "bin"]);
    const page = await open(browser);
    await give(page, "settings", fileOf("util.plist", binary));
    await told(page, "settings", "util.plist");
    await page.locator("#settings").getByLabel("Vibrate").click();
    await told(page, "settings", "Vibrate is off.");
    const { bytes } = await downloaded(page, "Download the file");
    assert.equal(readBack(bytes).content.Vibrate, false);
    assert.equal(readBack(bytes).form, "BINARY");
    await page.context().close();
});

test("the night can be played with the settings of the file", async () => {
    const page = await open(browser);
    await give(page, "settings", fileOf("s.plist", settingsFile("XML", { Enabled: false })));
    await told(page, "settings", "s.plist");
    await page.click("text=Play a night with these settings");
    await told(page, "night", "The night has the settings of s.plist.");
    await played(page);
    assert.match(await verdict(page), /^Never quiet: monitoring is switched off/);
    await page.context().close();
});

test("a settings file that a scenario cannot hold is refused for the night", async () => {
    const page = await open(browser);
    const plist = "<plist><dict><key>Enabled</key><true/><key>x</key><data>AAEC</data></dict></plist>";
    await give(page, "settings", fileOf("data.plist", plist));
    await told(page, "settings", "data.plist");
    await page.click("text=Play a night with these settings");
    assert.match(await refusal(page, "night"), /^data\.plist: a night cannot be played/);
    await played(page);
    assert.match(await verdict(page), /^Quiet for/);
    await page.context().close();
});

test("an event after the end stands at the end", async () => {
    const page = await open(browser);
    await give(page, "night", fileOf("late.toml", "hours = 1\n[[event]]\nat = 22:40:00\ncharger = true\n[[event]]\nat = 23:59:00\ncharger = false\n"));
    await told(page, "night", "late.toml");
    assert.deepEqual(await page.$$eval(".handle", (all) => all.map((handle) => handle.style.left)), ["16.6667%", "100%"]);
    assert.ok(await page.evaluate(() => document.documentElement.scrollWidth <= innerWidth));
    await page.context().close();
});

/**
 * Drags the handle of an event, by its label, over a share of the time line. It is grabbed beside its
 * centre.
 */
async function drag(page, label, share, { whileDragging = async () => {} } = {}) {
    const marked = page.locator(`.handle[aria-label="${label}"]`);
    await marked.scrollIntoViewIfNeeded();
    const handle = await marked.boundingBox();
    const track = await page.locator(".track.hours").boundingBox();
    const [x, y] = [handle.x + 0.8 * handle.width, handle.y + handle.height / 2];
    await page.mouse.move(x, y);
    await page.mouse.down();
    await page.mouse.move(x + share * track.width, y, { steps: 8 });
    await whileDragging();
    await page.mouse.up();
    await played(page);
}

const trackOf = (page, lane) => page.locator(".lane", { has: page.getByText(lane, { exact: true }) }).locator(".track");

/** Draws on a lane from one share of its width to another. */
async function draw(page, lane, from, to) {
    const { x, y, width, height } = await trackOf(page, lane).boundingBox();
    await page.mouse.move(x + from * width, y + height / 2);
    await page.mouse.down();
    await page.mouse.move(x + to * width, y + height / 2, { steps: 4 });
    await page.mouse.up();
    await played(page);
}

const laidDown = "The phone is laid down, screen down.";
const taken = "The phone is taken into the hand.";

test("dragging an event plays the night again", async () => {
    const page = await open(browser);
    await choose(page, "night");
    await played(page);
    assert.match(await verdict(page), /^Quiet for 7 h 20 min/);
    await drag(page, taken, -0.5 / 9.5, { whileDragging: () => page.locator("#night .verdict", { hasText: "Quiet for 6 h 50 min" }).waitFor() });
    // The part of the night in view stays, and so do the kinds of lines that are hidden.
    await page.click("#night [aria-label='Zoom in']");
    await page.click("#night .filter.kind-event");
    const shown = () => page.$$eval("#night .range, #night .filter input", ([range, ...filters]) => [range.textContent, ...filters.map(({ checked }) => checked)]);
    const before = await shown();
    await drag(page, taken, -0.5 / 9.5);
    assert.match(await verdict(page), /^Quiet for 6 h 20 min/);
    assert.deepEqual(await shown(), before);
    assert.ok(before.includes(false));
    await page.focus(`.handle[aria-label="${laidDown}"]`);
    for (let i = 0; i < 3; ++i) await page.keyboard.press("ArrowLeft");
    await page.keyboard.press("PageUp");
    await played(page);
    assert.equal(await page.getAttribute(`.handle[aria-label="${laidDown}"]`, "aria-valuetext"), "23:42:00");
    assert.match(await verdict(page), /^Quiet for 6 h 08 min/);
    assert.match(await page.textContent("#night .status"), /^Quiet for 6 h 08 min/);
    await page.keyboard.press("Delete");
    await played(page);
    assert.match(await verdict(page), /^Never quiet/);
    assert.equal(await page.evaluate(() => document.activeElement.getAttribute("aria-label")), taken);
    assert.deepEqual(page.complaints, []);
    await page.context().close();
});

test("what is drawn on a lane happens in the night", async () => {
    const page = await open(browser);
    await choose(page, "night");
    await played(page);
    const lanes = { Charger: "charger", Call: "call", Airplane: "airplane", "Wi-Fi": "wifi", Bluetooth: "bluetooth", Cellular: "cellular_data" };
    for (const name of Object.keys(lanes)) await draw(page, name, 0.3, 0.5);
    const { bytes } = await downloaded(page, "Download the scenario");
    const events = [...bytes.toString().matchAll(/\[\[event\]\]\nat = (\S+)\n(\w+) = (.+)/g)].map(([, at, action, value]) => [at, action, value]);
    for (const action of Object.values(lanes)) {
        const [first, second] = events.filter(([, other]) => other === action);
        assert.deepEqual([first[0], second[0]], ["2026-11-22T01:21:00", "2026-11-22T03:15:00"], action);
        assert.notEqual(first[2], second[2]);
    }
    assert.equal(await page.locator("#night .events li").count(), 14);
    assert.ok((await page.$$eval("#night .events .words", (all) => all.map((words) => words.textContent))).every(Boolean));
    assert.deepEqual(page.complaints, []);
    await page.context().close();
});

test("drawing backwards adds the same, and a full part of a lane is not drawn on", async () => {
    const page = await open(browser);
    await choose(page, "night");
    await played(page);
    await draw(page, "Charger", 0.5, 0.3);
    assert.deepEqual(await page.$$eval(".handle.charger, .handle.off", (all) => all.map((handle) => handle.getAttribute("aria-valuetext"))), ["01:21:00", "03:15:00"]);
    await draw(page, "Posture", 0.5, 0.6);
    await draw(page, "Charger", 0.4, 0.6);
    assert.equal(await page.locator(".handle").count(), 4);
    await page.context().close();
});

test("changes that are made at once are all kept", async () => {
    const page = await open(browser);
    await give(page, "settings", fileOf("s.plist", settingsFile("XML", { Enabled: true, TimeLimit: false })));
    await told(page, "settings", "s.plist");
    await page.evaluate(() => {
        for (const input of document.querySelectorAll("#settings [role=switch]")) if (input.dataset.focus.match(/ (Enabled|TimeLimit|Vibrate)$/)) input.click();
    });
    const { bytes } = await downloaded(page, "Download the file");
    const { content } = readBack(bytes);
    assert.deepEqual([content.Enabled, content.TimeLimit, content.Vibrate], [false, true, false]);

    await choose(page, "night");
    await played(page);
    await page.evaluate(() => {
        const [, second] = document.querySelectorAll(".handle");
        for (let i = 0; i < 4; ++i) second.dispatchEvent(new KeyboardEvent("keydown", { key: "PageDown", bubbles: true }));
        document.querySelector("#night [data-focus='value Vibrate']").click();
    });
    await played(page);
    assert.deepEqual(await clocksOf(page), ["23:30", "05:50"]);
    assert.match((await downloaded(page, "Download the scenario")).bytes.toString(), /^Vibrate = false$/m);
    await page.context().close();
});

test("what is changed while the program is busy is kept", async () => {
    const page = await open(browser);
    await choose(page, "night");
    await played(page);
    await give(page, "recording", fileOf("long.csv", `time,x,y,z\n${"0.5,rubbish,0,0\n".repeat(1_000_000)}`));
    await page.evaluate(async () => {
        const pause = () => new Promise((done) => setTimeout(done, 50));
        document.querySelector("#night [data-focus='value Vibrate']").click();
        await pause();
        const [first, second] = document.querySelectorAll(".handle");
        second.dispatchEvent(new KeyboardEvent("keydown", { key: "Delete" }));
        await pause();
        first.dispatchEvent(new KeyboardEvent("keydown", { key: "PageUp" }));
    });
    await page.getByRole("button", { name: "Stop", exact: true }).click();
    await choose(page, "night");
    await played(page);
    assert.deepEqual(await clocksOf(page), ["23:45"]);
    const scenario = (await downloaded(page, "Download the scenario")).bytes.toString();
    assert.match(scenario, /^Vibrate = false$/m);
    assert.equal(scenario.match(/\[\[event\]\]/g).length, 1);
    await page.context().close();
});

test("a file that is given while another is read takes its place", async () => {
    const page = await open(browser);
    const long = `time,x,y,z\n${"0.5,rubbish,0,0\n".repeat(1_000_000)}`;
    await give(page, "recording", fileOf("long.csv", long));
    await give(page, "recording", fileOf("still.csv", still));
    await told(page, "recording", "still.csv: 600 readings");
    assert.equal(await page.locator("#recording [role=alert]").textContent(), "");
    await give(page, "recording", fileOf("long.csv", long));
    await page.getByRole("button", { name: "Stop", exact: true }).click();
    await told(page, "recording", "Stopped.");
    await give(page, "settings", fileOf("s.plist", settingsFile("XML")));
    await told(page, "settings", "s.plist");
    assert.equal(await page.locator("#recording [role=alert]").textContent(), "");
    await page.context().close();
});

test("a value that the form cannot show is written with a button", async () => {
    const page = await open(browser);
    await give(page, "settings", fileOf("s.plist", settingsFile("XML", { Sensitivity: 12 })));
    await told(page, "settings", "s.plist");
    await page.click("text=Write 9");
    await told(page, "settings", "Sensitivity is 9.");
    assert.equal(await page.evaluate(() => document.activeElement.dataset.focus), "value Sensitivity");
    await page.locator("#settings").getByLabel("Launch another application").fill("a.b");
    await page.keyboard.press("Enter");
    await told(page, "settings", "launch-app-a.b is on.");
    assert.equal(await page.evaluate(() => document.activeElement.dataset.focus), "identifier new");
    await page.context().close();
});

test("a tap on a lane draws, too", async () => {
    const page = await open(browser, { width: 390, height: 800, isMobile: true, hasTouch: true });
    await choose(page, "night");
    await played(page);
    const track = trackOf(page, "Charger");
    const { width, height } = await track.boundingBox();
    await track.tap({ position: { x: width / 2, y: height / 2 } });
    await played(page);
    const clocks = await page.$$eval(".handle.charger, .handle.off", (all) => all.map((handle) => handle.getAttribute("aria-valuetext")));
    assert.equal(clocks.length, 2);
    assert.match(clocks[0], /^03:1\d:00$/);
    assert.match(clocks[1], /^04:1\d:00$/);
    await page.context().close();
});

test("a finger drags an event", async () => {
    const page = await open(browser, { width: 390, height: 800, isMobile: true, hasTouch: true });
    await choose(page, "night");
    await played(page);
    const handle = page.locator(`.handle[aria-label="${taken}"]`);
    await handle.scrollIntoViewIfNeeded();
    const { x, y, width, height } = await handle.boundingBox();
    const track = await page.locator(".track.hours").boundingBox();
    const input = await page.context().newCDPSession(page);
    const touch = (type, share) =>
        input.send("Input.dispatchTouchEvent", {
            type,
            touchPoints: type === "touchEnd" ? [] : [{ x: x + width / 2 - share * track.width, y: y + height / 2 }],
        });
    await touch("touchStart", 0);
    for (const share of [0.05, 0.1, 0.15, 0.2]) await touch("touchMove", share);
    await touch("touchEnd", 0.2);
    await played(page);
    assert.match(await handle.getAttribute("aria-valuetext"), /^04:5\d:00$/);
    assert.match(await verdict(page), /^Quiet for 5 h 2\d min/);
    await page.context().close();
});

test("switches are those of the browser in forced colours, which paint over their own", async () => {
    for (const [forcedColors, expected] of [["active", "auto"], ["none", "none"]]) {
        const page = await open(browser, { forcedColors });
        await choose(page, "settings");
        await page.click("text=Make a new file");
        await told(page, "settings", "new file");
        const appearance = await page.locator('#settings [data-focus="value Debug"]').evaluate((input) => getComputedStyle(input).appearance);
        assert.equal(appearance, expected);
        await page.context().close();
    }
});

test("the advice is that of the command, and its setting can be made", async () => {
    const page = await open(browser);
    const scenario = '[[event]]\nat = 23:00:00\nposture = "screen-up"\n';
    await give(page, "night", fileOf("up.toml", scenario));
    await told(page, "night", "up.toml");
    await played(page);
    const path = join(folder, "up.toml");
    writeFileSync(path, scenario);
    assert.equal(await verdict(page), reportData("night", path).verdict[0]);
    assert.match(await verdict(page), /ScreenDown/);
    await unfold(page, "Settings of this night");
    await page.locator("#night").getByLabel("ScreenDown").click();
    await played(page);
    assert.match(await verdict(page), /^Quiet for/);
    await page.context().close();
});

test("an event is added, moved by its time, and removed in the list", async () => {
    const page = await open(browser);
    await choose(page, "night");
    await played(page);
    await unfold(page, "Exact times");
    await page.getByLabel("Add", { exact: true }).selectOption({ label: "A call comes in" });
    await page.getByLabel("at", { exact: true }).fill("06:49:30");
    await page.click("#night .event-list .add button");
    await played(page);
    assert.match(await page.textContent("#night .changes"), /06:49:30EventA call comes in/);
    const row = page.locator("#night .events li", { hasText: "call" });
    await row.locator("input").fill("03:00");
    await played(page);
    await row.locator("button").click();
    await played(page);
    assert.equal(await page.locator("#night .events li").count(), 2);
    assert.match(await verdict(page), /^Quiet for 7 h 20 min, everything came back/);
    await page.context().close();
});

const clocksOf = (page) => page.$$eval(".handle", (all) => all.map((handle) => handle.getAttribute("aria-valuetext").slice(0, 5)));

test("the start moves to another day, and the events keep their local times", async () => {
    const page = await open(browser);
    await choose(page, "night");
    await played(page);
    await unfold(page, "Date, hours and time zone");
    // The clocks go forward in that night.
    await page.getByLabel("Start", { exact: true }).fill("2027-03-27T22:00");
    await page.click("text=Apply");
    await page.locator("#night .heading", { hasText: "March 2027" }).waitFor();
    await played(page);
    assert.equal(await page.inputValue("#night .fields input >> nth=1"), "2027-03-28T08:00");
    assert.deepEqual(await clocksOf(page), ["23:30", "06:50"]);
    assert.match(await verdict(page), /^Quiet for 6 h 20 min/);
    for (const [field, value, sentence] of [["End", "2027-03-27T21:00", /^End: /], ["Start", "2027-03-27T23:45", /^Start: an event is before it/]]) {
        await page.getByLabel(field, { exact: true }).fill(value);
        await page.click("text=Apply");
        assert.match(await refusal(page, "night"), sentence);
        assert.match(await verdict(page), /^Quiet for 6 h 20 min/);
        await page.getByLabel("End", { exact: true }).fill("2027-03-28T08:00");
    }
    await page.context().close();
});

test("a date is typed with the keyboard", async () => {
    const page = await open(browser);
    await choose(page, "night");
    await played(page);
    await unfold(page, "Date, hours and time zone");
    await page.focus("#night .fields input >> nth=0");
    await page.keyboard.type("03272027");
    await page.keyboard.press("Enter");
    await page.locator("#night .heading", { hasText: "27 March" }).waitFor();
    assert.equal(await page.locator("#night > .card [role=alert]").isVisible(), false);
    await page.context().close();
});

test("a time that the clocks show twice is the first one, and the page says so", async () => {
    const page = await open(browser);
    const scenario = 'timezone = "Europe/Paris"\nstart = 2026-10-24T22:30:00\nend = 2026-10-25T08:00:00\n[[event]]\nat = 23:00:00\nposture = "screen-down"\n[[event]]\nat = 2026-10-25T03:00:00\nposture = "in-hand"\n';
    await give(page, "night", fileOf("autumn.toml", scenario));
    await told(page, "night", "autumn.toml");
    await played(page);
    await page.focus(`.handle[aria-label="${taken}"]`);
    await page.keyboard.press("PageDown"); // 02:45, for the second time.
    await told(page, "night", "can name only the first");
    await played(page);
    const at = Number(await page.getAttribute(`.handle[aria-label="${taken}"]`, "aria-valuenow"));
    assert.equal(at, 4.25 * 3600);
    assert.match(await verdict(page), /^Quiet for 3 h 45 min/);
    await page.context().close();
});

test("a night of several days has its days in the list", async () => {
    const page = await open(browser);
    const events = [1, 2, 3].map((day) => `[[event]]\nat = 2014-03-0${day}T23:30:00\nposture = "screen-down"\n[[event]]\nat = 2014-03-0${day + 1}T06:50:00\nposture = "in-hand"\n`);
    await give(page, "night", fileOf("days.toml", `hours = 90\n${events.join("")}`));
    await told(page, "night", "days.toml");
    await played(page);
    const texts = await page.$$eval(".handle", (all) => all.map((handle) => handle.getAttribute("aria-valuetext")));
    assert.equal(new Set(texts).size, 6);
    await unfold(page, "Exact times");
    await page.fill("#night .events input >> nth=5", "2014-03-05T07:00");
    await page.keyboard.press("Tab");
    await played(page);
    assert.equal(await page.inputValue("#night .events input >> nth=5"), "2014-03-05T07:00");
    await page.context().close();
});

test("the downloaded scenario plays the same in the command, call for call", async () => {
    const page = await open(browser);
    await choose(page, "night");
    await played(page);
    await drag(page, taken, -0.13);
    await unfold(page, "Exact times");
    await page.getByLabel("Add", { exact: true }).selectOption({ label: "The phone is plugged in" });
    await page.click("#night .event-list .add button");
    await played(page);
    const { name, bytes } = await downloaded(page, "Download the scenario");
    const [path, trace] = [join(folder, name), join(folder, "dragged.jsonl")];
    writeFileSync(path, bytes);
    command("night", path, "--quiet", "--trace", trace);
    const calls = readFileSync(trace, "utf8");
    assert.ok(calls.split("\n").length > 1000);
    assert.equal(noctara.traceOfNight(bytes.toString()), calls);
    assert.equal((await verdict(page)), reportData("night", path).verdict[0]);
    await page.context().close();
});

test("the ready-made nights have the verdicts of the command", async () => {
    const page = await open(browser);
    const scenarios = join(root, "scenarios");
    for (const name of readdirSync(scenarios).filter((file) => file.endsWith(".toml"))) {
        await give(page, "night", join(scenarios, name));
        await told(page, "night", `This is ${name}.`);
        await played(page);
        assert.equal(await verdict(page), reportData("night", join(scenarios, name)).verdict[0], name);
    }
    assert.deepEqual(page.complaints, []);
    await page.context().close();
});

/** The summary of a recording that a phone makes of itself. Its sensor reads this along z, in m/s². */
async function recordedSummary(z, options = {}) {
    const page = await open(browser, { clockRuns: true, width: 390, height: 800, isMobile: true, hasTouch: true, ...options });
    await page.evaluate((length) => {
        const along = { x: 0.1, y: 0.05, z: length };
        setInterval(() => dispatchEvent(new DeviceMotionEvent("devicemotion", { accelerationIncludingGravity: along })), 20);
    }, z);
    await page.getByRole("button", { name: "Record here" }).tap();
    await told(page, "recording", "Lay the phone down");
    await told(page, "recording", "Do not touch");
    await page.locator("#recording .verdict").first().waitFor();
    const summary = await page.textContent("#recording .summary");
    // Eleven seconds with a reading each 20 ms, and not those of the three seconds before.
    const [readings] = (await page.textContent("#recording .status")).match(/\d+(?= readings)/);
    assert.ok(readings <= 640, `${readings} readings`);
    await page.context().close();
    return summary;
}

test("the ready-made nights and 50 random ones have the traces of the command, byte for byte", async () => {
    const scenarios = join(root, "scenarios");
    const readyMade = readdirSync(scenarios).filter((file) => file.endsWith(".toml")).map((file) => readFileSync(join(scenarios, file), "utf8"));
    const random = Array.from({ length: 50 }, (_, i) => randomScenario(1000 + i));
    const page = await open(browser);
    for (const scenario of [...readyMade, ...random]) {
        const ofCommand = createHash("sha256").update(traceOfCommand(scenario)).digest("hex");
        assert.equal(await digestInWorker(page, "traceOfNight", [scenario]), ofCommand, scenario);
    }
    await page.context().close();
});

test("a phone records its own motion, along the axes of its browser", async () => {
    const userAgent = "Mozilla/5.0 (iPhone; CPU iPhone OS 17_0 like Mac OS X) AppleWebKit/605.1.15 Version/17.0 Safari/604.1";
    const [android, iphone] = await Promise.all([recordedSummary(9.8), recordedSummary(-9.8, { userAgent })]);
    for (const summary of [android, iphone]) {
        assert.match(summary, /^Keep Sensitivity 5/);
        assert.match(summary, /Set ScreenDown off, because the phone lies with the screen up/);
    }
});

test("a refused permission is told", async () => {
    const page = await open(browser, { clockRuns: true });
    await page.evaluate(() => (DeviceMotionEvent.requestPermission = async () => "denied"));
    await page.getByRole("button", { name: "Record here" }).click();
    assert.match(await refusal(page, "recording"), /did not allow the motion sensor/);
    await page.context().close();
});

test("a device without a motion sensor is told so", async () => {
    const page = await open(browser, { clockRuns: true });
    await page.getByRole("button", { name: "Record here" }).click();
    assert.match(await refusal(page, "recording"), /^The motion sensor delivered nothing\./);
    await page.context().close();
});

for (const colorScheme of ["light", "dark"])
    for (const width of [360, 1600])
        test(`axe-core finds no fault, ${colorScheme}, ${width} pixels wide`, async () => {
            const page = await open(browser, { width, colorScheme });
            await give(page, "recording", fileOf("still.csv", still));
            await told(page, "recording", "600 readings");
            const noScroll = () => page.evaluate(() => document.documentElement.scrollWidth <= innerWidth);
            assert.deepEqual(await axeFaults(page), []);
            assert.ok(await noScroll());
            await give(page, "settings", fileOf("s.plist", settingsFile("XML")));
            await told(page, "settings", "s.plist");
            assert.deepEqual(await axeFaults(page), []);
            assert.ok(await noScroll());
            await choose(page, "night");
            await played(page);
            for (const summary of await page.$$("#night summary")) await summary.click();
            assert.deepEqual(await axeFaults(page), []);
            assert.ok(await noScroll());
            await page.context().close();
        });

test("a browser that is too old is told so", async () => {
    const without = { "Intl.supportedValuesOf": () => delete Intl.supportedValuesOf, Worker: () => delete window.Worker };
    for (const [name, before] of Object.entries(without)) {
        const page = await open(browser, { before });
        assert.match(await page.textContent("main > .wrong"), /^This browser cannot show the page; use one of 2023/, name);
        await page.context().close();
    }
});

test("the panels are reached by the keyboard", async () => {
    const page = await open(browser);
    await page.focus("#tab-recording");
    await page.keyboard.press("ArrowRight");
    assert.ok(await page.isVisible("#settings"));
    assert.ok(!(await page.isVisible("#recording")));
    await page.keyboard.press("End");
    assert.ok(await page.isVisible("#night"));
    assert.equal(await page.evaluate(() => document.activeElement.id), "tab-night");
    await page.context().close();
});
