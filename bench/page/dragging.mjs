/// Measures how long the owner's page takes from a move of the pointer, while an event of the night is
/// dragged, to the frame that shows the new report. scripts/bench-page runs it.
import { choose, launch, open, played } from "../../tests/page/browser.mjs";

const moves = 100;

function percentile(sorted, share) {
    return sorted[Math.min(sorted.length - 1, Math.floor(share * sorted.length))].toFixed(1);
}

async function measure(page) {
    await choose(page, "night");
    await played(page);
    const handle = await page.locator(".handle").last().boundingBox();
    const [x, y] = [handle.x + handle.width / 2, handle.y + handle.height / 2];
    await page.mouse.move(x, y);
    await page.mouse.down();
    const times = [];
    for (let i = 1; i <= moves; ++i) {
        const redrawn = page.evaluate(
            () =>
                new Promise((done) => {
                    let start;
                    document.addEventListener("pointermove", () => (start = performance.now()), { capture: true, once: true });
                    const result = document.querySelector("#night .result");
                    const drawn = new MutationObserver(() => {
                        drawn.disconnect();
                        requestAnimationFrame(() => setTimeout(() => done(performance.now() - start)));
                    });
                    drawn.observe(result, { childList: true });
                }),
        );
        await page.mouse.move(x - 3 * i, y);
        times.push(await redrawn);
    }
    await page.mouse.up();
    return times.sort((one, other) => one - other);
}

const browser = await launch();
const page = await open(browser, { clockRuns: true });
const times = await measure(page);
console.log(`redraw while dragging, ${moves} moves: median ${percentile(times, 0.5)} ms, 90 % ${percentile(times, 0.9)} ms, longest ${percentile(times, 1)} ms`);
await browser.close();
