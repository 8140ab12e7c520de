/// The colours of the charts. page.css defines them, for light and for dark.

const names = [
    "text", "muted", "line", "surface", "band", "quiet-wash", "tilt", "length", "lies", "not-lying",
    "nothing", "quiet", "watching", "suspended", "outside", "charger-missing", "off", "on",
    "airplane", "call", "sleep", "mark", "count", "on-colour",
];

const dark = window.matchMedia("(prefers-color-scheme: dark)");

/** Calls `changed` when the user changes between light and dark, until `signal` aborts. */
export function onThemeChange(changed, signal) {
    dark.addEventListener("change", changed, { signal });
}

export function readTheme() {
    const style = getComputedStyle(document.documentElement);
    const theme = { font: `11px ${style.getPropertyValue("--font").trim()}` };
    for (const name of names) theme[name] = style.getPropertyValue(`--${name}`).trim();
    return theme;
}
