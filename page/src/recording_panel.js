/// Does Noctara work on this phone? A recording of its accelerometer tells.
import { fill, make } from "../../report/page/src/dom.js";
import { drawRecording } from "../../report/page/src/recording.js";
import { fileButton } from "./files.js";
import { recordMotion } from "./motion.js";
import { withNames } from "./option_names.js";
import { Panel } from "./panel.js";

/// What the user can say about a recording, with the option of the command for it.
const options = {
    axes: { flag: "--axes", name: "Axes", values: { ios: "an iPhone's", android: "Android's" } },
    unit: { flag: "--unit", name: "Unit", values: { g: "g", "m/s²": "m/s²", mg: "mg" } },
    timeUnit: { flag: "--time-unit", name: "Unit of time", values: { s: "seconds", ms: "milliseconds", us: "microseconds", ns: "nanoseconds" } },
    rate: { flag: "--rate", name: "Readings a second" },
};

const namesOfOptions = Object.fromEntries(Object.values(options).map(({ flag, name }) => [flag, `the choice “${name}”`]));

/** A text of the program with the names of the page's fields. */
const inWordsOfThePage = (text) => withNames(text, namesOfOptions);

function makeField(key, { name, values }, changed) {
    const control = values
        ? make(
              "select",
              { name: key },
              make("option", { value: "" }, "as the file says, or told from it"),
              Object.entries(values).map(([value, text]) => make("option", { value }, text)),
          )
        : make("input", { name: key, type: "number", min: "0", step: "any", placeholder: "as the file says" });
    control.addEventListener("change", changed);
    return { key, control, label: make("label", {}, make("span", {}, name), control) };
}

export class RecordingPanel extends Panel {
    constructor(element, program) {
        super(element);
        this.program = program;
        this.result = make("div", { class: "result" });
        this.fields = Object.entries(options).map(([key, option]) => makeField(key, option, () => this.read()));
        this.recordButton = make("button", { type: "button", onclick: () => this.record() }, "Record here");
        this.stopButton = make("button", { type: "button", hidden: true, onclick: () => this.stop() }, "Stop");
        this.choices = make(
            "details",
            { class: "card choices", hidden: true },
            make("summary", {}, "Read the recording in another way"),
            make("div", { class: "fields" }, this.fields.map(({ label }) => label)),
        );
        element.append(
            make(
                "div",
                { class: "card" },
                make("h2", {}, "Does it work on my phone?"),
                make("p", {}, "Lay the phone where it lies at night, and record its accelerometer for half a minute, with an application such as phyphox or Sensor Logger. Drop the CSV file here; it may be compressed with gzip. The page says which Sensitivity suits the phone."),
                make("p", {}, "Or record here, in the browser of the phone: lay it down, keep it still for ten seconds, and read the advice. Browsers allow this only to pages that were opened over https or from localhost."),
                make(
                    "div",
                    { class: "actions" },
                    fileButton("Choose a recording…", ".csv,.tsv,.txt,.gz,text/csv,text/plain,application/gzip", (file) => this.open(file)),
                    this.recordButton,
                    this.stopButton,
                ),
                this.notices,
            ),
            this.choices,
            this.result,
        );
    }

    /** Reads a File. `axes` are those of the device, if they are known. */
    open(file, axes = "") {
        this.file = file;
        for (const { key, control } of this.fields) control.value = key === "axes" ? axes : "";
        return this.read();
    }

    /** Reads the file. If an earlier file is still being read, that stops. */
    read() {
        const { file } = this;
        this.reading?.abort();
        const reading = new AbortController();
        this.reading = reading;
        return this.attempt(async () => {
            this.tell(`Reading ${file.name} …`);
            this.choices.hidden = false;
            this.stopButton.hidden = false;
            const chosen = {};
            for (const { key, control } of this.fields)
                if (control.value !== "") chosen[key] = key === "rate" ? Number(control.value) : control.value;
            try {
                const data = await this.program.ask("recording", [file, chosen], {
                    progress: (share) => this.showProgress(share),
                    signal: reading.signal,
                });
                this.tell(`${file.name}: ${data.samples} readings.`);
                this.draw(data);
            } catch (error) {
                if (error.name !== "AbortError") throw new Error(inWordsOfThePage(error.message));
                throw error;
            } finally {
                if (this.reading === reading) {
                    this.showProgress(undefined);
                    this.stopButton.hidden = true;
                }
            }
        });
    }

    stop() {
        this.reading?.abort();
        this.tell("Stopped.");
    }

    draw(data) {
        data.verdict = data.verdict.map(inWordsOfThePage);
        data.remarks = [...data.remarks, ...data.skipped].map(inWordsOfThePage);
        fill(this.result);
        drawRecording(data, this.result, { signal: this.signalForDrawing() });
    }

    async record() {
        this.recordButton.disabled = true;
        await this.attempt(async () => {
            const { file, axes } = await recordMotion((phase, left) =>
                this.tell(phase === "leave" ? `Lay the phone down: ${left} s.` : `Recording: ${left} s. Do not touch the phone.`),
            );
            await this.open(file, axes);
        });
        this.recordButton.disabled = false;
    }
}
