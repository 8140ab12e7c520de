/// The table of what happened and what the monitor did about it. It has at most some hundred rows
/// at a time, so that a month stays fast.
import { fill, freshId, make } from "./dom.js";
import { readingInWords } from "./words.js";

const rowsAtOnce = 300;

const kindNames = {
    event: "Event",
    state: "State",
    reading: "Countdown",
    "idle sleep": "Idle sleep",
    settings: "Settings",
    monitor: "Monitor",
};

/** Separates a line of the story into what happens and why. */
export function whatAndWhy(text) {
    const found = /^(Reading \d of \d|A reading|No readings|Settings|By hand): (.*)$/s.exec(text);
    if (!found) return [text, ""];
    const why = found[2];
    return [found[1], why.charAt(0).toUpperCase() + why.slice(1)];
}

/** Why the state changed, as the readings alone do not say in one line. */
function whyStateChanged(night, time) {
    const cycle = night.cycleAt(time);
    return cycle < 0 ? "" : `Three readings in a row. ${readingInWords(night, cycle)}`;
}

/**
 * `story`: [time, kind, text] for each line. `jump(time)` shows that time in the charts. `hidden` has the
 * kinds that the user does not want to see.
 */
export function makeChanges(night, jump, hidden) {
    const { story, local } = night;
    const headingId = freshId("changes");
    let shownRows = rowsAtOnce;
    const body = make("tbody");
    const more = make("button", { type: "button", class: "more" });
    const count = make("p", { class: "hint", role: "status" });

    const row = ([time, kind, text], index, rows) => {
        const [what, reason] = whatAndWhy(text);
        const isNewState = kind === "state" && text.startsWith("The phone");
        const why = reason || (isNewState ? whyStateChanged(night, time) : "");
        const newDay = index === 0 || local.day(rows[index - 1][0]) !== local.day(time);
        const link = make(
            "button",
            { type: "button", class: "jump", tabindex: index === 0 ? "0" : "-1", onclick: () => jump(time) },
            local.clock(time),
        );
        link.setAttribute("aria-label", `${local.clock(time)}: show in the charts`);
        const cells = make(
            "tr",
            { class: `kind-${kind.replace(" ", "-")}`, "data-time": String(time) },
            make("td", { class: "time" }, link),
            make("td", { class: "kind" }, make("span", {}, kindNames[kind] ?? kind)),
            make("td", {}, what),
            make("td", { class: "why" }, why),
        );
        cells.addEventListener("click", (event) => {
            if (event.target !== link && !String(getSelection())) jump(time);
        });
        return newDay
            ? [make("tr", { class: "day" }, make("th", { colspan: "4", scope: "rowgroup" }, local.day(time))), cells]
            : [cells];
    };
    const update = () => {
        const rows = story.filter(([, kind]) => !hidden.has(kind));
        fill(body, rows.slice(0, shownRows).flatMap(row));
        more.hidden = rows.length <= shownRows;
        more.textContent = `Show ${Math.min(rowsAtOnce, rows.length - shownRows)} more of ${rows.length - shownRows}`;
        count.textContent = rows.length === story.length ? "" : `${rows.length} of ${story.length} lines.`;
    };
    more.addEventListener("click", () => {
        shownRows += rowsAtOnce;
        update();
    });
    // One stop for the tab key; the arrow keys move within the table.
    body.addEventListener("keydown", (event) => {
        const links = [...body.querySelectorAll(".jump")];
        const at = links.indexOf(event.target);
        const to = { ArrowDown: at + 1, ArrowUp: at - 1, Home: 0, End: links.length - 1 }[event.key];
        if (at < 0 || to === undefined) return;
        event.preventDefault();
        if (!links[to]) return;
        links[at].tabIndex = -1;
        links[to].tabIndex = 0;
        links[to].focus();
    });
    const present = Object.keys(kindNames).filter((kind) => story.some((line) => line[1] === kind));
    const filters = present.map((kind) =>
        make(
            "label",
            { class: `filter kind-${kind.replace(" ", "-")}` },
            make("input", {
                type: "checkbox",
                checked: !hidden.has(kind),
                onchange: (event) => {
                    if (event.target.checked) hidden.delete(kind);
                    else hidden.add(kind);
                    update();
                },
            }),
            make("span", {}, kindNames[kind]),
        ),
    );
    update();
    const head = ["Time", "Kind", "What", "Why"].map((name) => make("th", { scope: "col" }, name));
    return make(
        "section",
        { class: "changes", "aria-labelledby": headingId },
        make("h2", { id: headingId }, "What happened"),
        make("p", { class: "hint" }, "Choose a line to see it in the charts."),
        make("div", { class: "filters", role: "group", "aria-label": "Kinds of lines" }, filters),
        make("table", {}, make("thead", {}, make("tr", {}, head)), body),
        count,
        more,
    );
}
