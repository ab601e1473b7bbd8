// Draws a circle with the mouse, saves it, loads it again, and takes a picture.
//
//     halvis-sandbox --script samples/circle.js [DIRECTORY]
//
// The ZEL file and the picture land in DIRECTORY, "out" when none is given.

const directory = args[0] || "out";
const file = directory + "/circle.zel";
makeDirectory(directory);
if (fileExists(file)) removeFile(file);

/// The numbers behind a keyword of the one shape in a text.
function numbers(text, keyword) {
    const line = text.split("\n").find(l => l.startsWith(keyword + " "));
    assert(line, "no " + keyword + " in\n" + text);
    return line.split(" ").slice(1).map(Number);
}

// Sicily left of the middle, so that the dialog leaves it free.
view.camera = { lat: 38, lon: 29, alt: 0, range: 5000000, azimuth: 0, elevation: 90 };

menu("Plug-ins", "Overlay Editor...");
const editor = dialog("Overlay Editor");
assert(editor.shown, "the editor dialog did not open");
editor.moveTo(755, 25);

// Draw: press at the centre, drag, release on the edge; a right click ends drawing.
editor.choose("Shape:", "Circle");
const drawn = view.drag({ lat: 37.5, lon: 14 }, { lat: 37.5, lon: 26 }, { steps: 8 });
const radius = distance(drawn.from, drawn.to);
view.click({ lat: 28, lon: 20 }, { button: "right" });
waitFor(() => editor.checked("Stop"), "the buttons to follow the tool");

// The panel shows what the mouse did.
editor.choose("Rng:", "km");
assertNear(parseFloat(editor.value("Radius:")), radius / 1000, 0.006, "radius in the panel");
editor.color("Line Color:", "FFC800FF");
editor.check("Filled:");
editor.color("Fill Color:", "FFC80050");

answerFileDialog(file);
editor.press("Save As...");
waitFor(() => fileExists(file), "the saved file");
const saved = readFile(file);
const [latitude, longitude] = numbers(saved, "centerlla");
assertNear(latitude, drawn.from.lat, 1e-9, "latitude of the centre");
assertNear(longitude, drawn.from.lon, 1e-9, "longitude of the centre");
assert(saved.includes("rangeunits m\n"), "the radius is not in metres:\n" + saved);
assertNear(numbers(saved, "radius")[0], radius, 0.001, "radius in the file");

// Load it and save it again: the same bytes.
editor.press("Delete All");
assertEqual(editor.items().length, 0, "shapes after Delete All");
answerFileDialog(file);
editor.press("...");
waitFor(() => editor.items().length === 1, "the loaded circle");
removeFile(file);
editor.press("Save");
waitFor(() => fileExists(file), "the file saved again");
assertEqual(readFile(file), saved, "what was loaded and saved again");

// A picture of it all: the circle being edited, the cursor on the point that holds its radius.
editor.select("", editor.items()[0]);
editor.press("Edit");
const edge = destination(latitude, longitude, 90, radius);
view.move(edge.lat, edge.lon);
wait(100);
picture(directory + "/circle.png");
print("radius " + (radius / 1000).toFixed(3) + " km, centre " + latitude + " " + longitude);
