/// Files that the user chooses, drops and downloads.
import { make } from "../../report/page/src/dom.js";

/** A button that lets the user choose a file. `accept` as of an input. */
export function fileButton(label, accept, chosen) {
    const input = make("input", {
        type: "file",
        accept,
        class: "file",
        onchange: () => {
            const [file] = input.files;
            input.value = ""; // The same file can be chosen again.
            if (file) chosen(file);
        },
    });
    return make("label", { class: "button" }, input, label);
}

/** Offers bytes or a text as a download. */
export function download(name, content) {
    const url = URL.createObjectURL(new Blob([content], { type: "application/octet-stream" }));
    make("a", { href: url, download: name }).click();
    setTimeout(() => URL.revokeObjectURL(url), 60_000);
}

/** What a file probably is: "settings", "scenario" or "recording". `usual` if nothing tells. */
async function kindOf(file, usual) {
    if (/\.toml$/i.test(file.name)) return "scenario";
    if (/\.(csv|tsv|gz)$/i.test(file.name)) return "recording";
    if (/\.plist$/i.test(file.name)) return "settings";
    const start = await file.slice(0, 64).text();
    return /^(bplist|\s*<(\?xml|!DOCTYPE|plist))/.test(start) ? "settings" : usual;
}

/**
 * Takes files that are dropped anywhere on the page: `dropped(kind, file)`. `usual()` is the kind of a
 * file that could be anything. `refused(sentence)` says why something was not taken.
 */
export function takeDrops(usual, dropped, refused) {
    const { body } = document;
    const carriesFiles = (event) => event.dataTransfer?.types.includes("Files");
    let depth = 0;
    const over = (change) => {
        depth = Math.max(0, depth + change);
        body.classList.toggle("drop-here", depth > 0);
    };
    document.addEventListener("dragenter", (event) => carriesFiles(event) && over(1));
    document.addEventListener("dragleave", (event) => carriesFiles(event) && over(-1));
    document.addEventListener("dragover", (event) => carriesFiles(event) && event.preventDefault());
    document.addEventListener("drop", async (event) => {
        if (!carriesFiles(event)) return;
        event.preventDefault();
        over(-depth);
        const [item] = event.dataTransfer.items;
        const [file] = event.dataTransfer.files;
        if (event.dataTransfer.files.length > 1) refused("Drop one file at a time.");
        else if (!file || item?.webkitGetAsEntry?.()?.isDirectory) refused("This is a folder; drop a file.");
        else dropped(await kindOf(file, usual()), file);
    });
}
