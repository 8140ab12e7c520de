/// A page of a report in a browser, for the tests.
import { execFileSync } from "node:child_process";
import { existsSync, mkdtempSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { pathToFileURL } from "node:url";

import { root } from "../browser.mjs";

export { launch, root } from "../browser.mjs";

const command = process.env.NOCTARA_COMMAND ?? join(root, "build-tests/noctara");
if (!existsSync(command)) throw new Error(`${command} is missing; run scripts/test-report`);

export const folder = mkdtempSync(join(tmpdir(), "noctara-report-"));
process.on("exit", () => rmSync(folder, { recursive: true, force: true }));

/** Runs the command. Exit code 1 is accepted: the run found something wrong. Returns its output. */
export function noctara(...args) {
    try {
        return execFileSync(command, args, { cwd: root, encoding: "utf8", maxBuffer: 1 << 28 });
    } catch (error) {
        if (error.status !== 1) throw error;
        return error.stdout;
    }
}

/** Writes the report of a night into the folder of the tests and returns its path. */
export function reportOf(name, ...args) {
    const file = join(folder, `${name}.html`);
    noctara("night", ...args, "--report", file);
    return file;
}

/** Opens a file. `page.complaints` collects what the console says and each request but the file. */
export async function open(browser, file, { width = 1400, height = 900, colorScheme = "light", ...options } = {}) {
    const context = await browser.newContext({ viewport: { width, height }, colorScheme, ...options });
    const page = await context.newPage();
    const url = pathToFileURL(file).href;
    page.complaints = [];
    page.on("console", (message) => page.complaints.push(`console: ${message.text()}`));
    page.on("pageerror", (error) => page.complaints.push(`error: ${error.message}`));
    page.on("dialog", (dialog) => {
        page.complaints.push(`dialog: ${dialog.message()}`);
        dialog.dismiss();
    });
    page.on("request", (request) => {
        if (request.url() !== url && !request.url().startsWith("data:"))
            page.complaints.push(`request: ${request.url()}`);
    });
    await page.goto(url);
    await page.waitForSelector(".charts canvas");
    await settled(page);
    return page;
}

/** Waits until the page has drawn what is due. */
export function settled(page) {
    return page.evaluate(
        () => new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(done))),
    );
}

/** The colours of the drawn part of each canvas: how many different ones there are. */
export function coloursOfCharts(page) {
    return page.$$eval(".charts canvas", (canvases) =>
        canvases.map((canvas) => {
            const { data } = canvas.getContext("2d").getImageData(0, 0, canvas.width, canvas.height);
            return new Set(new Uint32Array(data.buffer)).size;
        }),
    );
}

/** The time at the cursor, as the page tells it. */
export const cursorTime = (page) => page.textContent(".moment time");

/** What the page tells about the reading at the cursor: name and text of each thing. */
export function reasons(page) {
    return page.$eval(".moment .why", (list) => {
        const names = [...list.querySelectorAll("dt")].map((name) => name.textContent);
        const texts = [...list.querySelectorAll("dd")].map((text) => text.textContent);
        return Object.fromEntries(names.map((name, index) => [name, texts[index]]));
    });
}

export const shownRange = (page) => page.textContent(".range");

/** Moves the mouse to a share of the width of a chart. */
export async function pointAt(page, share, chart = 0) {
    const box = await page.locator(".u-over").nth(chart).boundingBox();
    await page.mouse.move(box.x + box.width * share, box.y + box.height / 2);
    await settled(page);
}
