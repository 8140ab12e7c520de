/// The settings as a form: a switch or a slider for each, and the applications.
import { fill, freshId, make } from "../../report/page/src/dom.js";

/** `change(key, text)` changes a setting; a text of null removes the key. */
function switchRow({ key, meaning, value, standard, words }, change) {
    const id = freshId("switch");
    const input = make("input", {
        type: "checkbox",
        role: "switch",
        id,
        checked: (value ?? standard) !== 0,
        onchange: () => change(key, input.checked ? "on" : "off"),
    });
    return make(
        "div",
        { class: "setting" },
        make("label", { for: id }, make("span", { class: "key" }, key), ` ${meaning}`),
        input,
        value === null ? make("p", { class: "hint" }, `Missing: ${words}`) : null,
    );
}

function numberRow({ key, meaning, value, standard, least, most, words }, change) {
    const id = freshId("number");
    const shown = make("output", { for: id }, value === null ? String(standard) : words);
    const input = make("input", {
        type: "range",
        id,
        min: String(least),
        max: String(most),
        value: String(value ?? standard),
        oninput: () => (shown.textContent = input.value),
        onchange: () => change(key, input.value),
    });
    return make(
        "div",
        { class: "setting number" },
        make("label", { for: id }, make("span", { class: "key" }, key), ` ${meaning}`),
        make("span", { class: "slider" }, input, shown),
        value === null ? make("p", { class: "hint" }, `Missing: ${words}`) : null,
    );
}

function applicationRow({ key, identifier, value }, change) {
    const id = freshId("application");
    const input = make("input", {
        type: "checkbox",
        role: "switch",
        id,
        checked: value !== 0,
        onchange: () => change(key, input.checked ? "on" : "off"),
    });
    return make(
        "div",
        { class: "setting" },
        make("label", { for: id }, make("span", { class: "key" }, identifier)),
        make("span", {}, make("button", { type: "button", "aria-label": `Remove ${identifier}`, onclick: () => change(key, null) }, "Remove"), " ", input),
    );
}

function newApplication(change) {
    const id = freshId("identifier");
    const input = make("input", { id, type: "text", autocomplete: "off", autocapitalize: "off", spellcheck: "false", placeholder: "com.apple.mobiletimer" });
    return make(
        "form",
        {
            class: "add",
            onsubmit: (event) => {
                event.preventDefault();
                if (input.value.trim()) change(`launch-app-${input.value.trim().replace(/^launch-app-/, "")}`, "on");
            },
        },
        make("label", { for: id }, "Launch another application"),
        input,
        make("button", {}, "Add"),
    );
}

/**
 * Draws the settings, as settingsOf in script_functions.h returns them, into `element`. The focus stays
 * on the setting that it is on.
 */
export function drawSettings({ keys, applications, others, odd }, element, change) {
    const focused = [...element.querySelectorAll("input, button")].indexOf(document.activeElement);
    fill(
        element,
        odd.length > 0
            ? make("section", { class: "odd", "aria-label": "What is odd" }, make("h3", {}, "What is odd"), make("ul", {}, odd.map((text) => make("li", {}, text))))
            : make("p", { class: "fine" }, "Nothing is odd."),
        make("h3", {}, "Settings"),
        keys.map((row) => (row.switch ? switchRow : numberRow)(row, change)),
        make("h3", {}, "Applications to launch when the phone goes quiet"),
        applications.map((row) => applicationRow(row, change)),
        newApplication(change),
        others.length > 0
            ? [
                  make("h3", {}, "Other keys, which stay as they are"),
                  make("dl", { class: "others" }, others.map(({ key, words }) => make("div", {}, make("dt", {}, key), make("dd", {}, words)))),
              ]
            : null,
    );
    if (focused >= 0) element.querySelectorAll("input, button")[focused]?.focus();
}
