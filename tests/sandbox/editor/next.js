// What is typed in place of clicks: a route by bearing and distance, grid references, a wedge on a ship; mixed with
// clicks, and in quick drawing. GeographicLib is the judge. With a directory as argument it leaves pictures there.
menu("Plug-ins", "Overlay Editor...");
const editor = dialog("Overlay Editor"), alone = dialog("Next Point");
const shown = () => overlays().filter(o => !o.path).map(o => o.text);
const points = text => (text.match(/^lla .*/gm) || []).map(line => {
    const [, lat, lon] = line.split(" ").map(Number);
    return { lat, lon };
});
const take = name => { if (args[0]) picture(`${args[0]}/next-${name}.png`); };
const near = (a, b, what) => assertNear(distance(a, b), 0, 1e-3, what);

// Eight legs across the date line; before Enter the next one is seen, and told.
view.camera = { lat: -17, lon: 179.9, alt: 0, range: 200000, azimuth: 0, elevation: 90 };
editor.choose("Shape:", "Line");
editor.type("Next:", "17 00S 179 30E");
assert(shown()[0].includes("\n+\n") || shown()[0].includes("annotation +"), "a mark where the first point will be: " + shown());
take("first");
editor.fill("Next:", "17 00S 179 30E");
let route = [{ lat: -17, lon: 179.5 }];
for (const [nm, bearing] of [[12, 45], [20, 90], [15.5, 100.25], [8, 180], [9, 225], [21, 270], [7.3, 359], [2, 10]]) {
    const last = route[route.length - 1];
    const next = destination(last.lat, last.lon, bearing, nm * 1852);
    const text = route.length % 2 ? `${nm} nm ${bearing}` : `${bearing} ${nm} nm`;
    editor.type("Next:", text);
    const band = shown().find(text => text.includes("0xff0073ff"));
    near(points(band)[1], next, "the rubber band of " + text);
    assert(editor.captions().some(caption => caption.startsWith("Point " + (route.length + 1))), editor.captions().join());
    if (route.length === 4) take("leg");
    editor.fill("Next:", text);
    assertEqual(editor.value("Next:"), "");
    route.push(next);
}
const drawn = points(shown()[0]);
assertEqual([shown().length, drawn.length], [1, 9]);
drawn.forEach((point, i) => near(point, route[i], "point " + i));
editor.fill("Next:", "5 nm 270M");
assertEqual(editor.value("Next:"), "5 nm 270M", "refused, and stays");
assert(editor.captions().some(text => text.includes('"270M" is magnetic')), editor.captions().join());
take("refused");

// Typed and clicked points mix, and go one by one; Enter in the empty line finishes.
editor.fill("Next:", "");
assert(editor.checked("Stop"), "finished");
editor.press("Edit");
editor.moveTo(820, 20);
const clicked = view.click({ lat: -17.2, lon: 179.9 });
editor.fill("Next:", "+3 km E 1 km N");
near(points(shown()[0])[9], clicked, "clicked");
near(points(shown()[0])[10], destination(clicked.lat, clicked.lon, Math.atan2(3, 1) * 180 / Math.PI, Math.hypot(3000, 1000)), "shifted");
for (const count of [10, 9, 8]) {
    pressKey("Ctrl+Z");
    assertEqual(points(shown()[0]).length, count);
}
editor.press("Stop");
editor.press("Delete All");

// Six grid references, one after the other.
view.camera = { lat: 21.35, lon: -157.95, alt: 0, range: 60000, azimuth: 0, elevation: 90 };
editor.choose("Shape:", "Polygon");
const squares = ["4QFJ1000059000", "4Q FJ 15000 59000", "4qfj 18000 64000", "4QFJ1500069000", "4QFJ 10000 69000", "4QFJ0700064000"];
squares.forEach(square => editor.fill("Next:", square));
assertEqual(points(shown()[0]).length, 6);
assertNear(distance(points(shown()[0])[0], points(shown()[0])[1]), 5000, 5, "five kilometres of the grid");
take("grid");
editor.fill("Next:", "");
editor.press("Delete All");

// A wedge about the ship that the overlay is attached to, and a ring by a length alone.
const ship = addPlatform({ name: "Ship", lat: 64, lon: 179.95 });
view.camera = { lat: 64, lon: 179.95, alt: 0, range: 120000, azimuth: 0, elevation: 90 };
editor.choose("Shape:", "Wedge");
editor.press("Stop");
editor.check("Attach:");
dialog("Select Platform").select("", 0);
dialog("Select Platform").press("OK");
editor.press("Edit");
editor.type("Next:", "12 nm 270 330");
take("wedge-before");
editor.fill("Next:", "12 nm 270 330");
const wedge = shown()[0];
for (const line of ["centerxyz 0 0 0", "anglestart 270", "angledeg 60", "majoraxis 44448", "minoraxis 44448", "height 500"])
    assert(wedge.includes(`\n${line}\n`), line + " in " + wedge);
editor.fill("Next:", "2000 ft");
take("wedge");
movePlatform(ship, { lat: 64.05, lon: -179.9 });
assertEqual(shown()[0].match(/^centerxyz.*/m)[0], "centerxyz 0 0 0");
editor.close();

// Quick drawing with the row alone.
view.camera = { lat: 0, lon: 0, alt: 0, range: 100000, azimuth: 0, elevation: 90 };
menu("Actions", "Quick Circle Draw");
menu("Actions", "Type Next Overlay Point");
alone.fill("Next:", "1 N 1 E");
alone.type("Next:", "5 nm");
take("alone");
if (args[0]) alone.picture(args[0] + "/next-dialog.png");
alone.fill("Next:", "5 nm");
alone.fill("Next:", "");
assert(!alone.shown, "finished");
const quick = overlays().find(o => o.path);
assert(/^centerll[a]? 1 1/m.test(quick.text) && /^radius 9260$/m.test(quick.text), quick && quick.text);
