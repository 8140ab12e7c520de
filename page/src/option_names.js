/// The texts of the program are those of the command, and name its options.

/**
 * The text with another name for each option of the command. `names` has the name of each. An option may
 * have an example of its value behind it.
 */
export function withNames(text, names) {
    return Object.entries(names).reduce(
        (words, [option, name]) => words.replace(new RegExp(`${option}\\b( HZ| ios| android)?`, "g"), name),
        text,
    );
}
