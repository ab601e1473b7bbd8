// A ship sails, and the range ring that is drawn about it goes with it while it is being edited.
//
//     halvis-sandbox --script samples/sail.js [DIRECTORY]
//
// The ZEL file and three pictures land in DIRECTORY, "out" when none is given.

const directory = args[0] || "out";
const file = directory + "/ring.zel";
makeDirectory(directory);
if (fileExists(file)) removeFile(file);

openOverlay(scriptDirectory + "/islands.csv");
view.camera = { lat: 21.3, lon: -156.9, range: 330e3 };
const ferry = () => platforms().find(platform => platform.name === "Ferry Kahana");
const begin = time();
const minutes = count => setTime(begin + 60 * count);
minutes(30);

menu("Plug-ins", "Overlay Editor...");
const editor = dialog("Overlay Editor");
editor.moveTo(740, 40);

// A circle about the ship, attached to it, with the radius that is meant.
editor.choose("Shape:", "Circle");
const place = ferry();
view.drag(place, destination(place.lat, place.lon, 90, 30000), { steps: 4 });
editor.check("Attach:");
dialog("Select Platform").select("", "Ferry Kahana");
dialog("Select Platform").press("OK");
editor.fill("X:", 0);
editor.fill("Y:", 0);
editor.fill("Radius:", "8 nm");
editor.color("Line Color:", "40FFFFFF");
editor.press("Edit");

const pictures = [];
for (const [count, radius] of [[45, 8], [110, 12], [190, 20]]) {
    minutes(count);
    // Under way it gets another radius.
    editor.fill("Radius:", radius + " nm");
    const ship = ferry();
    const edge = destination(ship.lat, ship.lon, 0, radius * 1852);
    waitFor(() => {
        const at = view.pixel(edge.lat, edge.lon);
        return [-1, 0, 1].some(dy => (view.colorAt(Math.round(at.x), Math.round(at.y) + dy) & 0xff00) > 0xa000);
    }, "the ring about the ship", 3000);
    const grip = destination(ship.lat, ship.lon, 90, radius * 1852);
    waitFor(() => {
        const at = view.pixel(grip.lat, grip.lon);
        const color = view.colorAt(Math.round(at.x), Math.round(at.y));
        return (color & 0xff0000) > 0xc00000 && (color & 0xff00) > 0xc000 && (color & 0xff) < 0x60;
    }, "the edit point on the ring", 3000);
    pictures.push(directory + "/sail-" + count + ".png");
    picture(pictures[pictures.length - 1]);
}

answerFileDialog(file);
editor.press("Save As...");
const text = readFile(file);
assert(/^centerxyz 0 0 0$/m.test(text), "the ring is kept about the ship:\n" + text);
assertNear(Number(/^radius (\S+)/m.exec(text)[1]), 20 * 1852, 1e-6, "to the last digit");
print("ZEL file: " + file + "\nPictures: " + pictures.join(", "));
