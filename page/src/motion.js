/// Records the accelerometer of the phone that shows the page.

/// The user puts the phone down in this time. It begins when the button is pressed, and is not recorded.
const secondsToLeave = 3;

/// Advice needs ten seconds without motion.
const secondsToRecord = 11;

/** In browsers of iOS the axes point the other way. The browser of an iPad says that it is on a Mac. */
const isIos = () =>
    /iPhone|iPad|iPod/.test(navigator.userAgent) ||
    (navigator.userAgent.includes("Macintosh") && navigator.maxTouchPoints > 1);

async function requirePermission() {
    if (typeof DeviceMotionEvent === "undefined")
        throw new Error("This browser has no motion sensor; open the page on a phone.");
    if (DeviceMotionEvent.requestPermission && (await DeviceMotionEvent.requestPermission()) !== "granted")
        throw new Error("The browser did not allow the motion sensor; allow it, and try again.");
}

function nothingCame() {
    const place = window.isSecureContext && location.protocol !== "file:"
        ? "This device probably has none; open the page on a phone."
        : "Browsers give it only to pages that are opened over https or from localhost; open the page there, or drop a recording.";
    return new Error(`The motion sensor delivered nothing. ${place}`);
}

/**
 * Records the phone as it lies. `tell(phase, left)` is called as time passes: "leave" or "record", and
 * the seconds that are left of it. Returns the recording as a File, and its "axes".
 */
export async function recordMotion(tell) {
    await requirePermission();
    const lines = ["time (s),x (m/s²),y (m/s²),z (m/s²)"];
    const began = performance.now();
    const passed = () => (performance.now() - began) / 1000;
    let isDelivered = false;
    return new Promise((resolve, reject) => {
        const measured = ({ accelerationIncludingGravity: along, timeStamp }) => {
            if (!along || along.x === null) return;
            isDelivered = true;
            if (passed() >= secondsToLeave)
                lines.push([timeStamp / 1000, along.x, along.y, along.z].join(","));
        };
        const finish = () => {
            const file = new File([lines.join("\n") + "\n"], "recorded here");
            if (lines.length > 1) resolve({ file, axes: isIos() ? "ios" : "android" });
            else reject(nothingCame());
        };
        const timer = setInterval(() => {
            const left = secondsToLeave - passed();
            const isOver = left <= -secondsToRecord || (left <= 0 && !isDelivered);
            if (left > 0) tell("leave", Math.ceil(left));
            else tell("record", Math.ceil(left + secondsToRecord));
            if (!isOver) return;
            clearInterval(timer);
            removeEventListener("devicemotion", measured);
            finish();
        }, 200);
        addEventListener("devicemotion", measured);
    });
}
