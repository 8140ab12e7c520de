/// Texts of the program name options of the command. The page has fields instead.

/**
 * Replaces each option in a text. `names` maps an option to the name of its field. An example of a value
 * behind the option is removed, such as HZ in "--rate HZ".
 */
export function withNames(text, names) {
    return Object.entries(names).reduce(
        (words, [option, name]) => words.replace(new RegExp(`${option}\\b( HZ| ios| android)?`, "g"), name),
        text,
    );
}
