// The three pictures of the README: a ring is drawn about a ship, given exact numbers, and sails with her.
//
//     halvis-sandbox --size 1600x900 --script samples/tour.js [DIRECTORY]
//
// They land in DIRECTORY, "out" when none is given: tour-draw.png, tour-numbers.png, tour-attached.png.

const directory = args[0] || "out";
makeDirectory(directory);

openOverlay(scriptDirectory + "/islands.csv");
for (const name of ["ferry.zel", "patrol.zel"]) tickOverlay(name, false);
const ship = () => platforms().find(platform => platform.name === "MV Lanikai");
const begin = time();
const minutes = count => setTime(begin + 60 * count);
minutes(60);
if (!menuItems("View").find(item => item.text === "Coastlines").checked) menu("View", "Coastlines");
view.camera = { lat: 20.95, lon: -157.0, range: 360e3 };

menu("Plug-ins", "Overlay Editor...");
const editor = dialog("Overlay Editor");
editor.moveTo(755, 25);
editor.choose("Rng:", "nm");

/// Takes a picture, when the view has caught up.
function take(name) {
    wait(300);
    picture(directory + "/" + name);
}

// Drawing: pressed at the ship, the edge follows the mouse.
editor.choose("Shape:", "Circle");
const edge = bearing => destination(ship().lat, ship().lon, bearing, 24e3);
view.press(ship());
for (const bearing of [60, 90, 120]) view.move(edge(bearing));
take("tour-draw.png");
view.release(edge(120));

// Numbers and looks.
editor.fill("Radius:", "20");
editor.color("Line Color:", "FFC800FF");
editor.check("Filled:");
editor.color("Fill Color:", "FFC80040");
editor.press("Stop");
view.leave();
take("tour-numbers.png");
assertEqual(editor.value("Radius:"), "20.00", "the radius as it was typed");

// Attached to the ship, which sails on for two hours.
editor.check("Attach:");
const list = dialog("Select Platform");
list.select("", "MV Lanikai");
list.check("Center On Host");
list.press("OK");
minutes(180);
take("tour-attached.png");
const text = overlays().find(overlay => overlay.stream).text;
assert(/^centerxyz 0 0 0$/m.test(text), "the ring is about the ship:\n" + text);
