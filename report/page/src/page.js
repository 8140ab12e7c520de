import { drawReport } from "./report.js";

drawReport(
    JSON.parse(document.getElementById("data").textContent),
    document.getElementById("report"),
);
