/// Noctara's C++, compiled to WebAssembly, as functions of JavaScript.
import { zoneFile } from "./zone_file.js";

/// Where the C++ looks for the names of all zones.
const zoneFolder = "/usr/share/zoneinfo";

/// Where the C++ looks for the files of its questions.
const fileFolder = "/files";

/// Where the files of the browser are seen by the C++. It is not in the folder of the other files,
/// because a file may have any name.
const mountFolder = "/mounted";

/**
 * Starts the program. `makeModule` is the function of the script that Emscripten writes, `binary` the
 * content of its .wasm file. Its functions throw an Error with one sentence about what is wrong.
 */
export async function startNoctara(makeModule, binary) {
    const module = await makeModule({ wasmBinary: binary, zoneFile });
    const { FS, WORKERFS } = module;
    FS.mkdirTree(zoneFolder);
    const names = Intl.supportedValuesOf("timeZone").map((name) => `Z ${name}\n`);
    FS.writeFile(`${zoneFolder}/tzdata.zi`, names.join(""));
    FS.mkdirTree(fileFolder);
    FS.mkdirTree(mountFolder);
    FS.chdir(fileFolder);

    let reportRead = () => {};
    const { read } = WORKERFS.stream_ops;
    WORKERFS.stream_ops.read = (stream, buffer, offset, length, position) => {
        reportRead(position);
        return read(stream, buffer, offset, length, position);
    };

    /** The place of a copy for the C++. */
    function copied(text) {
        const size = module.lengthBytesUTF8(text) + 1;
        const place = module._malloc(size);
        module.stringToUTF8(text, place, size);
        return place;
    }

    function ask(name, question) {
        const texts = [name, JSON.stringify(question)].map(copied);
        const result = module._ask(...texts);
        const answer = JSON.parse(module.UTF8ToString(result));
        for (const place of [...texts, result]) module._free(place);
        if (answer.error !== undefined) throw new Error(answer.error);
        return answer.result;
    }

    // A name is shown in messages. It cannot lead to another folder.
    const placeOf = (name) => name.replace(/[/\0]/g, "_") || "file";

    /** Asks about a file {file, bytes}. Returns the answer, and the bytes of the file afterwards. */
    function askAboutBytes(name, { file, bytes }, more) {
        const place = placeOf(file);
        if (bytes) FS.writeFile(place, bytes);
        try {
            const answer = ask(name, { ...more, file: place });
            return { answer, bytes: FS.readFile(place) };
        } finally {
            if (FS.analyzePath(place).exists) FS.unlink(place);
        }
    }

    /**
     * Asks about a File of the browser, which is read piece by piece. Only a worker can do that.
     * `progress(share)` is called as it is read.
     */
    function askAboutFile(name, file, more, progress) {
        const place = placeOf(file.name);
        const tellEach = Math.max(file.size / 100, 1);
        let told = -tellEach;
        reportRead = (position) => {
            if (progress && file.size > 0 && Math.abs(position - told) >= tellEach) {
                told = position;
                progress(Math.min(position / file.size, 1));
            }
        };
        FS.mount(WORKERFS, { blobs: [{ name: place, data: file }] }, mountFolder);
        FS.chdir(mountFolder);
        try {
            return ask(name, { ...more, file: place });
        } finally {
            FS.chdir(fileFolder);
            FS.unmount(mountFolder);
        }
    }

    const askAbout = (name, file, more = {}, progress = undefined) =>
        file instanceof Blob ? askAboutFile(name, file, more, progress) : askAboutBytes(name, file, more).answer;

    // A file is {file: its name, bytes}, or a File of the browser.
    return {
        /** A scenario with changes; scenarioOf in script_functions.h says which. */
        scenario: (question) => ask("scenario", question),

        /** The same, with the settings of a file. */
        scenarioWithSettings: (question, file) => askAbout("scenario", file, question),

        /** The night of a scenario file, as the report draws it (docs/report.md). */
        night: (scenario, options = {}) => ask("night", { ...options, scenario }),

        /** The trace of the night of a scenario file, as its text. */
        traceOfNight: (scenario) => ask("traceOfNight", { scenario }),

        /** The recording, as the report draws it. `options`: {rate, axes, unit, timeUnit}. */
        recording: (file, options = {}, progress = undefined) =>
            askAbout("recording", file, options, progress),

        /** What a settings file has in it. */
        settings: (file) => askAbout("settings", file),

        /** Changes a key of {file, bytes} to a text such as "on", or removes it: null. Returns {answer, bytes}. */
        changeSetting: (file, key, value) => askAboutBytes("changeSetting", file, { key, value }),

        /** A new settings file {file} with the defaults: {answer, bytes}. */
        makeSettings: (file) => askAboutBytes("makeSettings", file, {}),
    };
}
