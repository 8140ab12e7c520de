/// The report of a night or of a recording, drawn into an element of a page.
import { drawNight } from "./night.js";
import { drawRecording } from "./recording.js";

/**
 * Replaces the content of `element` with the report. docs/report.md describes `data`, one object,
 * as it comes from JSON. The page needs the style page.css.
 */
export function drawReport(data, element) {
    element.textContent = "";
    element.classList.add("report");
    if (data.kind === "night") drawNight(data, element);
    else if (data.kind === "recording") drawRecording(data, element);
    else element.textContent = "This page has no data.";
}
