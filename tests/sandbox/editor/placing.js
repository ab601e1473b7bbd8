// What the hand expects of a line: on a ship that moves, with the panel beside it, and while the globe is turned.
const editor = dialog("Overlay Editor");
menu("Plug-ins", "Overlay Editor...");
editor.moveTo(820, 0);
view.camera = { lat: 40, lon: 5, range: 60000 };
editor.fill("Prec:", "6");
const color = (lat, lon, right) => {
    const at = view.pixel(lat, lon);
    return view.colorAt(Math.round(at.x) + right, Math.round(at.y)) & 0xffffff;
};
const isYellow = rgb => (rgb >> 16) > 0xc0 && ((rgb >> 8) & 0xff) > 0xc0 && (rgb & 0xff) < 0x60;
const isWhite = rgb => [16, 8, 0].every(shift => ((rgb >> shift) & 0xff) > 0xc0);
const meters = 60000 * 2 * Math.tan(0.4) / view.size.height;

// What was begun with nothing goes when something else is drawn; half drawn it stays, and is seen.
editor.choose("Shape:", "Circle");
editor.press("Stop");
editor.choose("Shape:", "Line");
let clicked = view.click(40.05, 5.02);
assertEqual(editor.items("All Shapes"), ["Line 2"]);
editor.press("Stop");
view.move(39.9, 4.9);
wait(60);
assert(isYellow(color(40.05, 5.02, 0)), "its point stays in view");
editor.press("Edit");

// Turning the globe with Space, or with the middle button, adds no corner.
const before = view.camera;
view.drag({ lat: 40, lon: 4.95 }, { lat: 40.03, lon: 4.95 }, { modifiers: "space" });
assert(view.camera.lat < before.lat - 0.02, "turned with Space");
view.drag({ lat: 40.05, lon: 4.95 }, { lat: 40, lon: 4.95 }, { button: "middle" });
assert(view.camera.elevation < 89, "tilted with the middle button");
view.camera = before;
assert(editor.has("1 of 1"));

// A ship at 300 m/s that the panel has not been told of: the points lie where the clicks were.
editor.uncheck("Attach:");
const ship = addPlatform({ name: "Ship", lat: 40, lon: 5, heading: 90, speed: 300 });
editor.check("Attach:");
dialog("Select Platform").select("", "Ship");
dialog("Select Platform").press("OK");
editor.press("Edit");
for (const [time, lat, lon] of [[1, 40.02, 4.95], [2, 39.97, 5.05], [3, 39.98, 4.97]]) {
    setTime(time);
    view.move(lat, lon);
    clicked = view.click(lat, lon);
    const drawn = overlays().filter(o => o.stream && o.text.includes("Line 2")).pop().text;
    const [x, y] = drawn.match(/xyz (\S+) (\S+)/g).pop().split(" ").slice(1).map(Number);
    const there = platforms()[0];
    assert(distance(destination(there.lat, there.lon, Math.atan2(x, y) * 180 / Math.PI, Math.hypot(x, y)), clicked) < meters,
           "at " + time + " s");
}

// A click on a point, without a motion of it, brings it into the panel, and a ring marks it.
const where = overlays().filter(o => o.stream && o.text.includes("Line 2")).pop().text.match(/xyz \S+ \S+/g)[1].split(" ");
const there = platforms()[0];
const second = destination(there.lat, there.lon, Math.atan2(where[1], where[2]) * 180 / Math.PI, Math.hypot(where[1], where[2]));
view.move(second);
view.click(second);
assert(editor.has("2 of 4"), "the panel shows it");
view.move(39.9, 4.9);
wait(60);
assert([6, 7, 8, 9].some(right => isWhite(color(second.lat, second.lon, right))), "its ring");

// Two half notches are one.
view.move(second);
view.wheel(second, { notches: 0.5, modifiers: "shift" });
assertNear(editor.number("Z:"), 0, 1e-9);
view.wheel(second, { notches: 0.5, modifiers: "shift" });
assert(editor.number("Z:") !== 0, "lifted");
