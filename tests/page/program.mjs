/// Noctara in the form for browsers, started in Node.js, for the tests.
import { readFileSync } from "node:fs";
import { createRequire } from "node:module";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";

import { startNoctara } from "../../page/src/noctara.js";

export const root = join(dirname(fileURLToPath(import.meta.url)), "../..");

const built = join(root, "build-page");
const makeModule = createRequire(import.meta.url)(join(built, "noctara-page.js"));
export const noctara = await startNoctara(makeModule, readFileSync(join(built, "noctara-page.wasm")));
