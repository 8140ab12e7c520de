/// The owner's page in a browser, for the tests.
import { existsSync, readFileSync } from "node:fs";
import { join } from "node:path";
import { pathToFileURL } from "node:url";

import { require, root } from "../browser.mjs";

export { launch } from "../browser.mjs";

const axe = readFileSync(require.resolve("axe-core/axe.min.js"), "utf8");

export const pageFile = join(root, "build-page/noctara.html");
if (!existsSync(pageFile)) throw new Error(`${pageFile} is missing; run scripts/test-page`);

/**
 * Opens the page, from disk by default. `page.complaints` collects what the console says, and each
 * request but those for the page and for its worker. The clock stands still unless `clockRuns`.
 * `before` is run in the page before its script.
 */
export async function open(browser, { url = pathToFileURL(pageFile).href, width = 1400, height = 900, clockRuns = false, before, ...options } = {}) {
    const context = await browser.newContext({
        viewport: { width, height },
        timezoneId: "Europe/Paris",
        acceptDownloads: true,
        ...options,
    });
    const page = await context.newPage();
    page.complaints = [];
    page.on("console", (message) => page.complaints.push(`console: ${message.text()}`));
    page.on("pageerror", (error) => page.complaints.push(`error: ${error.message}`));
    context.on("request", (request) => {
        if (request.url() !== url && !/^(data|blob):/.test(request.url()))
            page.complaints.push(`request: ${request.url()}`);
    });
    if (!clockRuns) await page.clock.setFixedTime(new Date("2026-11-22T12:00:00Z"));
    if (before) await page.addInitScript(before);
    await page.goto(url);
    return page;
}

export const choose = (page, panel) => page.click(`#tab-${panel}`);

/** Gives a file to the button of a panel. `file`: a path, or {name, mimeType, buffer}. */
export async function give(page, panel, file) {
    await choose(page, panel);
    await page.setInputFiles(`#${panel} .actions input[type=file]`, file);
}

export const fileOf = (name, content) => ({ name, mimeType: "application/octet-stream", buffer: Buffer.from(content) });

/** Drops files on the page as a user does. */
export async function drop(page, files) {
    const data = await page.evaluateHandle(
        (list) => {
            const transfer = new DataTransfer();
            for (const { name, bytes } of list) transfer.items.add(new File([new Uint8Array(bytes)], name));
            return transfer;
        },
        files.map(({ name, buffer }) => ({ name, bytes: [...buffer] })),
    );
    for (const type of ["dragenter", "dragover", "drop"]) await page.dispatchEvent("main", type, { dataTransfer: data });
}

/** Waits until a panel's status says this. */
export const told = (page, panel, text) => page.locator(`#${panel} .status`, { hasText: text }).waitFor();

/** The one sentence with which a panel refuses something. */
export async function refusal(page, panel) {
    const alert = page.locator(`#${panel} > .card [role=alert]`);
    await alert.waitFor();
    return alert.textContent();
}

/** The content of the file that a button offers. */
export async function downloaded(page, button) {
    const [download] = await Promise.all([page.waitForEvent("download"), page.click(`text=${button}`)]);
    return { name: download.suggestedFilename(), bytes: readFileSync(await download.path()) };
}

/** What axe-core finds wrong with the page as it is shown. */
export async function axeFaults(page) {
    await page.evaluate(axe);
    const { violations } = await page.evaluate(() => window.axe.run());
    return violations.map(({ id, nodes }) => `${id}: ${nodes.map(({ html }) => html.slice(0, 160)).join(" | ")}`);
}

/** Waits until the night is played, with its advice, and nothing more is to be played. */
export async function played(page) {
    await page.waitForFunction(() => document.querySelector("#night")?.getAttribute("aria-busy") === "false");
}

/** Opens a part of a panel that is closed at first. */
export const unfold = (page, summary) => page.click(`summary:has-text("${summary}")`);

export const verdict = (page) => page.textContent("#night .verdict");

/**
 * What a function of the program returns in a worker of the page. The names and arguments of noctara.js.
 * A text comes back as the SHA-256 of it.
 */
export async function digestInWorker(page, name, args) {
    return page.evaluate(
        async ([called, given]) => {
            if (!window.testWorker) {
                const text = (id) => document.getElementById(id).textContent.trim();
                window.testWorker = new Worker(URL.createObjectURL(new Blob([text("worker")])));
                window.testWorker.postMessage({ binary: Uint8Array.from(atob(text("program")), (c) => c.charCodeAt(0)) });
            }
            const { result, error } = await new Promise((done) => {
                window.testWorker.onmessage = ({ data }) => done(data);
                window.testWorker.postMessage({ id: 1, name: called, args: given });
            });
            if (error) throw new Error(error);
            const digest = await crypto.subtle.digest("SHA-256", new TextEncoder().encode(result));
            return [...new Uint8Array(digest)].map((byte) => byte.toString(16).padStart(2, "0")).join("");
        },
        [name, args],
    );
}
