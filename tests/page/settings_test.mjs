/// Settings files on the page beside those of the command.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { readFileSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { test } from "node:test";

import { command, folder } from "./command.mjs";
import { noctara } from "./program.mjs";

const source = {
    Enabled: true, ScanInterval: 2, Sensitivity: 12, Ratio: 0.1, Unknown: "text",
    "launch-app-com.apple.Maps": true,
};

/** The bytes of a settings file that Python writes. */
function written(form) {
    const script = "import json, plistlib, sys\n" +
        "sys.stdout.buffer.write(plistlib.dumps(json.load(sys.stdin), sort_keys=False, " +
        `fmt=plistlib.FMT_${form}))`;
    return execFileSync("python3", ["-c", script], { input: JSON.stringify(source) });
}

for (const form of ["XML", "BINARY"]) {
    const bytes = written(form);
    const onDisk = join(folder, `${form}.plist`);

    test(`a file in ${form} form is told as by the command`, () => {
        writeFileSync(onDisk, bytes);
        const { keys, applications, others, odd } = noctara.settings({ file: `${form}.plist`, bytes });
        assert.deepEqual(odd, command("settings", onDisk, "check").trim().split("\n"));
        const valueOf = (name) => keys.find(({ key }) => key === name);
        assert.equal(valueOf("ScanInterval").value, 2);
        assert.equal(valueOf("Enabled").words, "on");
        assert.equal(valueOf("StopHour").value, null);
        assert.deepEqual(applications.map(({ identifier }) => identifier), ["com.apple.Maps"]);
        assert.deepEqual(others.map(({ key }) => key), ["Ratio", "Unknown"]);
    });

    test(`a file in ${form} form is changed as by the command`, () => {
        for (const [key, value] of [["Sensitivity", "4"], ["Enabled", "off"], ["launch-app-a.b", "on"]]) {
            writeFileSync(onDisk, bytes);
            command("settings", onDisk, "set", key, value);
            const changed = noctara.changeSetting({ file: `${form}.plist`, bytes }, key, value);
            assert.deepEqual(Buffer.from(changed.bytes), readFileSync(onDisk), key);
        }
    });

    test(`an application of a file in ${form} form is removed as by the command`, () => {
        writeFileSync(onDisk, bytes);
        command("settings", onDisk, "launch", "remove", "com.apple.Maps");
        const key = "launch-app-com.apple.Maps";
        const { answer, bytes: after } = noctara.changeSetting({ file: `${form}.plist`, bytes }, key, null);
        assert.deepEqual(Buffer.from(after), readFileSync(onDisk));
        assert.deepEqual(answer.applications, []);
    });
}

test("a new file has the defaults", () => {
    const { answer, bytes } = noctara.makeSettings({ file: "new.plist" });
    assert.ok(answer.keys.every(({ value, standard }) => value === standard));
    assert.deepEqual(answer.odd, []);
    assert.deepEqual(noctara.settings({ file: "new.plist", bytes }), answer);
});

test("rubbish, and values that are none, are refused in one sentence", () => {
    const good = { file: "good.plist", bytes: written("XML") };
    const refused = (act) => assert.throws(act, ({ message }) => message.length > 20 && !message.includes("\n"));
    for (const bytes of ["", "rubbish", "bplist00", "<plist><array/></plist>"])
        refused(() => noctara.settings({ file: "bad.plist", bytes: Buffer.from(bytes) }));
    refused(() => noctara.changeSetting(good, "Sensitivity", "five"));
    refused(() => noctara.changeSetting(good, "Sensitivity", "10"));
    refused(() => noctara.changeSetting(good, "Sensitvity", "5"));
    assert.equal(noctara.settings(good).others.length, 2);
});
