// Edit points stand on their pixel and are as large at every distance, in every part of the earth, and on
// dense screens; they are grabbed by the pixel.
const pictures = args[0];
menu("Plug-ins", "Overlay Editor...");
const editor = dialog("Overlay Editor");
editor.moveTo(820, 20);
const hint = () => screenTexts().map(note => note.text).join();

/// Red, green and blue `right` pixels beside a place of the view.
function color(place, right, down = 0) {
    const argb = view.colorAt(Math.round(place.x) + right, Math.round(place.y) + down);
    return [argb / 65536 & 255, argb / 256 & 255, argb & 255];
}
function isYellow([red, green, blue]) { return red > 240 && green > 240 && blue < 20; }
function isWhite([red, green, blue]) { return red > 240 && green > 240 && blue > 240; }
function checkPoint(place, what) {
    wait(50);
    for (const [right, down] of [[-3, 0], [0, 3]])
        assert(isYellow(color(place, right, down)), what + ": yellow at " + [right, down] + ": " + color(place, right, down));
    assert(!isYellow(color(place, 5)), what + ": its edge");
}

const places = {
    "Hawaii": [21, -158, [100, 1000000]],
    "date line": [-3, 180, [10000, 20000000]],
    "near the pole": [89.9, 40, [100, 1000000]],
};
for (const name in places) {
    const [lat, lon, ranges] = places[name];
    for (const range of ranges) {
        const what = name + " from " + range + " m";
        const center = { lat, lon };
        const span = Math.min(range / 10, 900000);
        view.camera = { lat, lon, alt: 0, range, azimuth: 30, elevation: 90 };
        const edge = destination(lat, lon, 120, span);
        editor.choose("Shape:", "Circle");
        view.move(center);
        const drawn = view.drag(center, edge);
        view.move(destination(lat, lon, 300, span));
        checkPoint(drawn.from, what + ", centre");
        checkPoint(drawn.to, what + ", radius point");

        view.move({ x: drawn.from.x + 7, y: drawn.from.y });
        assert(hint().includes("move the centre"), what + ": 7 pixels are near enough, " + hint());
        wait(50);
        assert(isWhite(color(drawn.from, -6)), what + ": the highlighted point's ring");
        if (pictures) view.picture(`${pictures}/points-${name}-${range}.png`.replace(/ /g, "-"));
        view.move({ x: drawn.from.x, y: drawn.from.y - 10 });
        assert(!hint().includes("move the centre"), what + ": 10 are too far, " + hint());

        for (const factor of [0.4, 3]) {
            view.camera = { range: range * factor, elevation: 70 };
            checkPoint(view.pixel(drawn.from.lat, drawn.from.lon), what + ", times " + factor);
        }
        editor.press("Delete");
    }
}

// Lifted with the wheel, a point is joined to the ground by a line of one and a half pixels, here over the sea.
view.camera = { lat: 10, lon: -40, alt: 0, range: 3000000, azimuth: 0, elevation: 40 };
editor.choose("Shape:", "Text");
view.move(10, -40);
const ground = view.drag({ lat: 10, lon: -40 }, { lat: 10, lon: -40 }).to;
view.move(ground);
for (let i = 0; i < 5; ++i) view.wheel(ground, { notches: 20, modifiers: "shift" });
wait(50);
const isYellowish = ([red, green, blue]) => red > 110 && green > 110 && blue < 90;
let yellow = 0;
for (let up = 8; up < 60; up += 4)
    if ([-1, 0, 1].some(right => isYellowish(color(ground, right, -up)))) ++yellow;
assert(yellow > 10, "the altimeter line: " + yellow);
if (pictures) view.picture(pictures + "/points-lifted.png");
