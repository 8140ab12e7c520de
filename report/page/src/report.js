/// The report of a night or of a recording, drawn into an element of a page.
import { fill, make } from "./dom.js";
import { drawNight, nightHeading } from "./night.js";
import { drawRecording, recordingHeading } from "./recording.js";

/**
 * Replaces the content of `element` with the report. docs/report.md describes `data`, one object,
 * as it comes from JSON. The page needs the style page.css.
 */
export function drawReport(data, element) {
    element.classList.add("report");
    const [headingOf, draw] =
        { night: [nightHeading, drawNight], recording: [recordingHeading, drawRecording] }[data.kind] ?? [];
    if (!draw) {
        element.textContent = "This page has no data.";
        return;
    }
    const { title, heading, sub } = headingOf(data);
    document.title = `Noctara: ${title}`;
    fill(
        element,
        make(
            "header",
            {},
            make("p", { class: "brand" }, "Noctara"),
            make("h1", {}, heading),
            make("p", { class: "sub" }, sub),
        ),
    );
    draw(data, element);
    element.append(
        make("footer", {}, "Drawn by Noctara. The page needs no network. The charts are drawn by uPlot (MIT)."),
    );
}
