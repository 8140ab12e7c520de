/// The owner's page: three questions, each in a panel of its own.
import { make } from "../../report/page/src/dom.js";
import { takeDrops } from "./files.js";
import { NightPanel } from "./night_panel.js";
import { Program } from "./program.js";
import { RecordingPanel } from "./recording_panel.js";
import { SettingsPanel } from "./settings_panel.js";

const part = (id) => document.getElementById(id);
const tabs = [...document.querySelectorAll("[role=tab]")];
const panelOf = (tab) => part(tab.getAttribute("aria-controls"));

function select(tab) {
    for (const other of tabs) {
        const isSelected = other === tab;
        other.setAttribute("aria-selected", String(isSelected));
        other.tabIndex = isSelected ? 0 : -1;
        panelOf(other).hidden = !isSelected;
    }
}

function makeTabs() {
    tabs.forEach((tab, index) => {
        tab.addEventListener("click", () => select(tab));
        tab.addEventListener("keydown", (event) => {
            const next = { ArrowRight: index + 1, ArrowLeft: index - 1, Home: 0, End: tabs.length - 1 }[event.key];
            if (next === undefined) return;
            event.preventDefault();
            const chosen = tabs[(next + tabs.length) % tabs.length];
            select(chosen);
            chosen.focus();
        });
    });
}

function start() {
    makeTabs();
    const binary = Uint8Array.from(atob(part("program").textContent.trim()), (c) => c.charCodeAt(0));
    const program = new Program(part("worker").textContent, binary);
    const show = (name) => select(part(`tab-${name}`));
    const panels = {
        recording: new RecordingPanel(part("recording"), program),
        settings: new SettingsPanel(part("settings"), program, (file) => {
            show("night");
            panels.night.takeSettings(file);
        }),
        night: new NightPanel(part("night"), program),
    };
    const shown = () => tabs.find((tab) => tab.getAttribute("aria-selected") === "true").getAttribute("aria-controls");
    takeDrops(
        shown,
        (kind, file) => {
            show(kind === "scenario" ? "night" : kind);
            panels[kind === "scenario" ? "night" : kind].open(file);
        },
        (sentence) => panels[shown()].complain(sentence),
    );
}

try {
    start();
} catch (error) {
    const text = `This browser cannot show the page; use one of 2023 or later (${error.message}).`;
    document.querySelector("main").replaceChildren(make("p", { class: "wrong", role: "alert" }, text));
}
