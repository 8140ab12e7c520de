/// Noctara's C++, compiled to WebAssembly, as functions of JavaScript.
import { zoneFile } from "./zone_file.js";

/// Where the C++ looks for the names of all zones.
const zoneFolder = "/usr/share/zoneinfo";

/// Where the C++ looks for the files of its questions.
const fileFolder = "/files";

/**
 * Starts the program. `makeModule` is the function of the script that Emscripten writes, `binary` the
 * content of its .wasm file. Its functions throw an Error with one sentence about what is wrong.
 */
export async function startNoctara(makeModule, binary) {
    const module = await makeModule({ wasmBinary: binary, zoneFile });
    const { FS } = module;
    FS.mkdirTree(zoneFolder);
    const names = Intl.supportedValuesOf("timeZone").map((name) => `Z ${name}\n`);
    FS.writeFile(`${zoneFolder}/tzdata.zi`, names.join(""));
    FS.mkdirTree(fileFolder);
    FS.chdir(fileFolder);

    function ask(name, question) {
        const text = JSON.stringify(question);
        const size = module.lengthBytesUTF8(text) + 1;
        const argument = module._malloc(size);
        module.stringToUTF8(text, argument, size);
        const result = module[`_${name}`](argument);
        module._free(argument);
        const answer = JSON.parse(module.UTF8ToString(result));
        module._free(result);
        if (answer.error !== undefined) throw new Error(answer.error);
        return answer.result;
    }

    /** Asks about a file. Returns the answer, and the bytes of the file afterwards. */
    function askAboutFile(name, { file, bytes }, more = {}) {
        // A name is shown in messages. It cannot lead to another folder.
        const place = file.replace(/[/\0]/g, "_") || "file";
        if (bytes) FS.writeFile(place, bytes);
        try {
            const answer = ask(name, { file: place, ...more });
            return { answer, bytes: FS.readFile(place) };
        } finally {
            if (FS.analyzePath(place).exists) FS.unlink(place);
        }
    }

    return {
        /** The night of a scenario file, as the report draws it (docs/report.md). */
        night: (scenario) => ask("night", { scenario }),

        /** The trace of the night of a scenario file, as its text. */
        traceOfNight: (scenario) => ask("traceOfNight", { scenario }),

        /** The recording in {file, bytes}, as the report draws it. `options`: {rate, axes}. */
        recording: (file, options = {}) => askAboutFile("recording", file, options).answer,

        /** What a settings file {file, bytes} has in it. */
        settings: (file) => askAboutFile("settings", file).answer,

        /** Changes a key to a text such as "on", or removes it: null. Returns {answer, bytes}. */
        changeSetting: (file, key, value) => askAboutFile("changeSetting", file, { key, value }),

        /** A new settings file {file} with the defaults: {answer, bytes}. */
        makeSettings: (file) => askAboutFile("makeSettings", file),
    };
}
