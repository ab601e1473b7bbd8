// Edit points stand on their pixel and are as large at every distance, in every part of the earth, and on
// dense screens; they are grabbed by the pixel.
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
function checkPoint(place, what) {
    wait(50);
    for (const [right, down] of [[-3, 0], [0, 3]])
        assert(isYellow(color(place, right, down)), what + ": yellow at " + [right, down] + ": " + color(place, right, down));
    assert(!isYellow(color(place, 5)), what + ": its edge");
}

for (const [lat, lon, range] of [[21, -158, 100], [-3, 180, 20000000], [89.9, 40, 1000000]]) {
    const what = [lat, lon] + " from " + range + " m";
    const center = { lat, lon };
    const span = Math.min(range / 10, 1300000);
    view.camera = { lat, lon, alt: 0, range, azimuth: 30, elevation: 90 };
    editor.choose("Shape:", "Circle");
    view.move(center);
    const drawn = view.drag(center, destination(lat, lon, 120, span));
    view.move(destination(lat, lon, 300, span));
    checkPoint(drawn.from, what + ", centre");
    checkPoint(drawn.to, what + ", radius point");
    view.move({ x: drawn.from.x + 7, y: drawn.from.y });
    assert(hint().includes("move the centre"), what + ": 7 pixels are near enough, " + hint());
    wait(50);
    assert(color(drawn.from, -6).every(part => part > 240), what + ": the highlighted point's white ring");
    view.move({ x: drawn.from.x, y: drawn.from.y - 10 });
    assert(!hint().includes("move the centre"), what + ": 10 are too far, " + hint());
    view.camera = { range: range * 2, elevation: 70 };
    checkPoint(view.pixel(drawn.from.lat, drawn.from.lon), what + ", aslant");
    editor.press("Delete");
}
