/// The settings as a form: a switch or a slider for each, and the applications.
import { fill, freshId, make } from "../../report/page/src/dom.js";

/** Names an element of the form, so that a newly drawn form can focus the same one. */
const mark = (key, kind) => ({ "data-focus": `${kind} ${key}` });

/**
 * A hint, with a button that writes the value `shown`. The form shows that value, but the file has another
 * one or none. `change(key, text)` changes a setting. A text of null removes the key.
 */
function makeHint(key, hint, shown, change) {
    return make(
        "p",
        { class: "hint" },
        `${hint} `,
        make("button", { type: "button", ...mark(key, "write"), onclick: () => change(key, shown) }, `Write ${shown}`),
    );
}

function makeSwitch(key, id, isOn, change) {
    const input = make("input", {
        type: "checkbox",
        role: "switch",
        id,
        ...mark(key, "value"),
        checked: isOn,
        onchange: () => change(key, input.checked ? "on" : "off"),
    });
    return input;
}

function switchRow({ key, meaning, value, standard, words }, change) {
    const id = freshId("switch");
    return make(
        "div",
        { class: "setting" },
        make("label", { for: id }, make("span", { class: "key" }, key), ` ${meaning}`),
        makeSwitch(key, id, (value ?? standard) !== 0, change),
        value === null ? makeHint(key, `Missing: ${words}.`, standard === 0 ? "off" : "on", change) : null,
    );
}

function numberRow({ key, meaning, value, standard, least, most, words }, change) {
    const id = freshId("number");
    const inRange = Math.min(Math.max(value ?? standard, least), most);
    const inFile = value === null ? String(standard) : words;
    const shown = make("output", { for: id }, inFile);
    const input = make("input", {
        type: "range",
        id,
        ...mark(key, "value"),
        min: String(least),
        max: String(most),
        value: String(inRange),
        "aria-valuetext": inFile,
        oninput: () => {
            shown.textContent = input.value;
            input.setAttribute("aria-valuetext", input.value);
        },
        onchange: () => change(key, input.value),
    });
    const isShown = value !== null && words === String(inRange);
    return make(
        "div",
        { class: "setting number" },
        make("label", { for: id }, make("span", { class: "key" }, key), ` ${meaning}`),
        make("span", { class: "slider" }, input, shown),
        isShown ? null : makeHint(key, value === null ? `Missing: ${words}.` : `The file has ${words}.`, String(inRange), change),
    );
}

function applicationRow({ key, identifier, value }, change) {
    const id = freshId("application");
    return make(
        "div",
        { class: "setting" },
        make("label", { for: id }, make("span", { class: "key" }, identifier)),
        make(
            "span",
            { class: "actions" },
            make("button", { type: "button", ...mark(key, "remove"), "aria-label": `Remove ${identifier}`, onclick: () => change(key, null) }, "Remove"),
            makeSwitch(key, id, value !== 0, change),
        ),
    );
}

/** The key of an application that the user may give with or without its beginning. */
const keyOf = (identifier) => `launch-app-${identifier.trim().replace(/^launch-app-/, "")}`;

/** `typed` is the text that is in the field at first. */
function newApplication(typed, change) {
    const id = freshId("identifier");
    const input = make("input", {
        id, type: "text", value: typed, autocomplete: "off", autocapitalize: "off", spellcheck: "false",
        placeholder: "com.apple.mobiletimer", ...mark("new", "identifier"),
    });
    return make(
        "form",
        {
            class: "add",
            onsubmit: (event) => {
                event.preventDefault();
                if (input.value.trim()) change(keyOf(input.value), "on");
            },
        },
        make("label", { for: id }, "Launch another application"),
        input,
        make("button", mark("new", "add"), "Add"),
    );
}

/**
 * Draws the settings, as settingsOf in script_functions.h returns them, into `element`. The focus and the
 * text for an application that is not added yet stay.
 */
export function drawSettings({ keys, applications, others, odd }, element, change) {
    const focused = element.contains(document.activeElement) ? document.activeElement.dataset.focus : undefined;
    const typed = element.querySelector(".add input")?.value ?? "";
    fill(
        element,
        odd.length > 0
            ? make("section", { class: "odd", "aria-label": "What is odd" }, make("h3", {}, "What is odd"), make("ul", {}, odd.map((text) => make("li", {}, text))))
            : make("p", { class: "fine" }, "Nothing is odd."),
        make("h3", {}, "Settings"),
        keys.map((row) => (row.switch ? switchRow : numberRow)(row, change)),
        make("h3", {}, "Applications to launch when the phone goes quiet"),
        applications.map((row) => applicationRow(row, change)),
        newApplication(applications.some(({ key }) => key === keyOf(typed)) ? "" : typed, change),
        others.length > 0
            ? [
                  make("h3", {}, "Other keys, which stay as they are"),
                  make("dl", { class: "others" }, others.map(({ key, words }) => make("div", {}, make("dt", {}, key), make("dd", {}, words)))),
              ]
            : null,
    );
    if (focused === undefined) return;
    const marked = [...element.querySelectorAll("[data-focus]")];
    const same = marked.find(({ dataset }) => dataset.focus === focused);
    // The focus was on a removed application, or on a button that has written a value.
    const value = marked.find(({ dataset }) => dataset.focus === focused.replace(/^write /, "value "));
    (same ?? value ?? element.querySelector(".add input")).focus();
}
