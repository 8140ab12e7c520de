/// Are the settings right? A settings file, checked and changed.
import { make } from "../../report/page/src/dom.js";
import { download, fileButton } from "./files.js";
import { Panel } from "./panel.js";
import { drawSettings } from "./settings_form.js";

const usualName = "com.quorbit.Noctara.plist";

export class SettingsPanel extends Panel {
    /** `play(file)` plays a night with the settings of a file. */
    constructor(element, program, play) {
        super(element);
        this.program = program;
        this.form = make("div", { class: "card settings", hidden: true });
        this.keep = make(
            "div",
            { class: "actions", hidden: true },
            make("button", { type: "button", onclick: () => this.inTurn(() => download(this.file.file, this.file.bytes)) }, "Download the file"),
            make("button", { type: "button", onclick: () => this.inTurn(() => play(this.file)) }, "Play a night with these settings"),
        );
        element.append(
            make(
                "div",
                { class: "card" },
                make("h2", {}, "Are my settings right?"),
                make("p", {}, `Drop the settings file of the phone, ${usualName}. The page says what is odd about it and what each setting does. Change it, and download it again: keys that you do not change stay as they are, and so does the form of the file.`),
                make(
                    "div",
                    { class: "actions" },
                    fileButton("Choose a settings file…", ".plist,application/x-plist,text/xml", (file) => this.open(file)),
                    make("button", { type: "button", onclick: () => this.begin() }, "Make a new file"),
                ),
                this.keep,
                this.notices,
            ),
            this.form,
        );
    }

    open(file) {
        return this.inTurn(async () => {
            const answer = await this.program.ask("settings", [file]);
            this.show({ file: file.name, bytes: new Uint8Array(await file.arrayBuffer()) }, answer);
            this.tell(`This is ${file.name}.`);
        });
    }

    begin() {
        return this.inTurn(async () => {
            const { answer, bytes } = await this.program.ask("makeSettings", [{ file: usualName }]);
            this.show({ file: usualName, bytes }, answer);
            this.tell("This is a new file with the defaults. Download it to keep it.");
        });
    }

    async change(key, text) {
        const done = await this.inTurn(async () => {
            this.tell("Changing …");
            const { answer, bytes } = await this.program.ask("changeSetting", [this.file, key, text]);
            this.show({ ...this.file, bytes }, answer);
            this.tell(text === null ? `${key} is removed. Download the file to keep the change.` : `${key} is ${text}. Download the file to keep the change.`);
        });
        if (!done) this.show(this.file, this.answer);
    }

    show(file, answer) {
        this.file = file;
        this.answer = answer;
        this.form.hidden = false;
        this.keep.hidden = false;
        drawSettings(answer, this.form, (...edit) => this.change(...edit));
    }
}
