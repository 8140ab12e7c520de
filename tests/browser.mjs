/// Chromium, for the tests of the pages.
import { existsSync } from "node:fs";
import { createRequire } from "node:module";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";

export const root = join(dirname(fileURLToPath(import.meta.url)), "..");

/** Loads npm packages. */
export const require = createRequire(join(root, "report/page/package.json"));
const { chromium } = require("playwright-core");

const browserPath = process.env.NOCTARA_BROWSER ?? "/usr/bin/chromium";
if (!existsSync(browserPath)) throw new Error(`${browserPath} is missing; install Chromium`);

export function launch() {
    return chromium.launch({
        executablePath: browserPath,
        args: [
            "--no-sandbox", "--headless", "--disable-gpu", "--disable-quic", "--no-first-run",
            "--disable-background-networking", "--disable-component-update", "--disable-sync",
        ],
    });
}
