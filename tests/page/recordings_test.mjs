/// Recordings on the page beside those of the command.
import assert from "node:assert/strict";
import { readdirSync, readFileSync, writeFileSync } from "node:fs";
import { basename, join } from "node:path";
import { test } from "node:test";
import { gzipSync } from "node:zlib";

import { folder, reportData } from "./command.mjs";
import { noctara, root } from "./program.mjs";

function assertSameReport(path, options = {}) {
    const file = { file: basename(path), bytes: readFileSync(path) };
    const { skipped, ...report } = noctara.recording(file, options);
    const told = Object.entries(options).flatMap(([name, value]) => [`--${name}`, String(value)]);
    assert.deepEqual(report, reportData("detect", path, ...told));
    return skipped;
}

// The first byte of these files is for the fuzzer. Real recordings have no times.
const recordings = join(root, "tests/fuzz/corpus/recordings");
for (const name of readdirSync(recordings).filter((file) => file.endsWith(".csv")))
    test(`the recording ${name} has the report of the command`, () => {
        const path = join(folder, name);
        writeFileSync(path, readFileSync(join(recordings, name)).subarray(1));
        assertSameReport(path, /^[a-z]/.test(name) ? { rate: 100, axes: "android" } : {});
    });

const still = "time,x,y,z\n" + Array.from({ length: 600 }, (_, i) => `${i / 20},0.01,0.02,-0.998\n`).join("");

test("a compressed recording is read", () => {
    const file = join(folder, "still.csv.gz");
    writeFileSync(file, gzipSync(still));
    assert.deepEqual(assertSameReport(file), []);
});

test("a line without a reading is skipped and told", () => {
    const file = join(folder, "still.csv");
    writeFileSync(file, still + "rubbish\n");
    assert.match(assertSameReport(file).join("\n"), /^still\.csv:602: /);
});

test("rubbish is refused in one sentence, and the next file is read", () => {
    for (const bytes of ["", "rubbish", "\0".repeat(1000), "x,y,z\n1,2,3\n"])
        assert.throws(
            () => noctara.recording({ file: "a file", bytes: Buffer.from(bytes) }),
            ({ message }) => /^a file(:\d+)?: [^\n]+$/.test(message),
        );
    assert.equal(noctara.recording({ file: "still.csv", bytes: Buffer.from(still) }).samples, 600);
});
