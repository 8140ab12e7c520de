/// Elements. Text from data becomes text nodes only, never HTML.

/** An element with attributes and children. A child is an element or a text; null is left out. */
export function make(tag, attributes = {}, ...children) {
    const element = document.createElement(tag);
    for (const [name, value] of Object.entries(attributes))
        if (name.startsWith("on")) element.addEventListener(name.slice(2), value);
        else if (value !== null && value !== false) element.setAttribute(name, value === true ? "" : value);
    element.append(...children.flat(Infinity).filter((child) => child !== null));
    return element;
}

/** Replaces the children of an element. */
export function fill(element, ...children) {
    element.replaceChildren(...children.flat(Infinity).filter((child) => child !== null));
}

let ids = 0;

/** An id that no other element of the page has. */
export function freshId(name) {
    return `${name}-${++ids}`;
}
