// Whole shapes are moved and turned by the green point at their middle: each drag is one step, what is given stays
// exact, and a file keeps what nobody touched.
const editor = dialog("Overlay Editor");
menu("Plug-ins", "Overlay Editor...");
editor.moveTo(820, 0);
view.camera = { lat: 50, lon: 179.9, range: 400000 };
const file = temporaryDirectory() + "/box.zel";
const shown = () => overlays().filter(o => o.stream).map(o => o.text).join("");
const hint = () => screenTexts().map(note => note.text).join();
const points = text => (text.match(/^lla \S+ \S+/gm) || []).map(line => line.split(" ").slice(1).map(Number));

// A polygon across 180 degrees. Its middle is the one of its sides.
writeFile(file, "# Of a colleague\nstart\npolygon\nangleunits deg\nlla 50.5 180 0\nlla 50.05 -179.4 0\nlla 49.6 180 0\n" +
                                "lla 50.05 179.4 0\n3d name Box\nend\n\n# His ellipse\nstart\nellipse\nrangeunits km\nmajoraxis 120\nminoraxis 40\n" +
                                "3d name Egg\ncenterlla 49 -179.6 0\nend\n");
answerFileDialog(file);
editor.press("...");
editor.select("All Shapes", "Box");
editor.press("Edit");
const before = shown();
const box = points(before);
const middle = { lat: 50.05, lon: 180 };
const held = view.pixel(middle.lat, middle.lon);
view.move(held);
assert(hint().includes("Drag to move the whole shape, with Control to turn it"), "the middle is a point: " + hint());
view.drag(held, { x: held.x - 60, y: held.y }, { steps: 4 });
const moved = points(shown());
assert(moved.every(([lat, lon], i) => (lon - box[i][1] + 360) % 360 > 300), "to the west: " + moved);
editor.press("Undo");
assertEqual(points(shown()), box);
editor.press("Edit");
view.move(held);
view.press(held, { modifiers: "control" });
view.move({ x: held.x + 80, y: held.y }, { modifiers: "control" });
view.move({ x: held.x, y: held.y + 80 }, { modifiers: "control+shift" });
view.release({ x: held.x, y: held.y + 80 }, { modifiers: "control+shift" });
const turned = points(shown());
assertNear(turned[0][0], 50.05, 0.01);
assert(turned[0][1] < -179, "clockwise by a right angle: " + turned);
view.click({ x: 20, y: 20 }, { button: "right" });

// The selected shape has a white edge, and one that is edited has points instead.
editor.press("Stop");
const isWhite = argb => [16, 8, 0].every(shift => (argb >> shift & 255) > 170);
function edgeOf(lat, lon) {
    view.move({ x: 20, y: 20 });
    wait(60);
    const at = view.pixel(lat, lon);
    return [-3, -2, -1, 0, 1, 2, 3].filter(right => isWhite(view.colorAt(Math.round(at.x) + right, Math.round(at.y)))).length;
}
const texts = shown();
const eastward = destination(49, -179.6, 90, 60000);
assertEqual(edgeOf(eastward.lat, eastward.lon), 0);
editor.select("All Shapes", "Egg");
assert(edgeOf(eastward.lat, eastward.lon) > 1, "an edge");
assertEqual(shown(), texts, "the host has nothing of it");

// An ellipse turns by a number of its block; its neighbour and the comments stay as they are.
editor.press("Undo");
editor.select("All Shapes", "Egg");
editor.press("Edit");
const center = view.pixel(49, -179.6);
const below = { x: center.x, y: center.y + 28 };
view.move(below);
assert(hint().includes("turn it"), hint());
view.press(below, { modifiers: "control" });
view.move({ x: center.x - 70, y: center.y + 2 }, { modifiers: "control+shift" });
view.release({ x: center.x - 70, y: center.y + 2 }, { modifiers: "control+shift" });
assert(shown().includes("3d offsetcourse 90\n"), shown());
editor.press("Save");
const saved = readFile(file);
assert(saved.startsWith("# Of a colleague\nstart\npolygon\nangleunits deg\nlla 50.5 180 0\n"), saved);
assert(saved.includes("# His ellipse\nstart\nellipse\nrangeunits km\nmajoraxis 120\nminoraxis 40\n"), saved);
assert(saved.includes("3d name Egg\ncenterlla 49 -179.6 0\n3d offsetcourse 90\nend"), saved);
editor.press("Undo");
assert(!shown().includes("offsetcourse"), shown());
editor.close();
