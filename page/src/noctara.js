/// Noctara's C++, compiled to WebAssembly, as functions of JavaScript.
import { zoneFile } from "./zone_file.js";

/// Where the C++ looks for the names of all zones.
const zoneFolder = "/usr/share/zoneinfo";

/**
 * Starts the program. `makeModule` is the function of the script that Emscripten writes, `binary` the
 * content of its .wasm file.
 */
export async function startNoctara(makeModule, binary) {
    const module = await makeModule({ wasmBinary: binary, zoneFile });
    module.FS.mkdirTree(zoneFolder);
    const names = Intl.supportedValuesOf("timeZone").map((name) => `Z ${name}\n`);
    module.FS.writeFile(`${zoneFolder}/tzdata.zi`, names.join(""));

    /** Calls a function of the C++ that takes a text and returns one. */
    function call(name, text) {
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

    return {
        /** The trace of the night of a scenario file, as its text. Throws what is wrong with it. */
        traceOfNight: (scenario) => call("traceOfNight", scenario),
    };
}
