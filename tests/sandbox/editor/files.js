// The dialog's own work, from top to bottom: its widgets, names, centre, load, save, close, delete, help.
const editor = dialog("Overlay Editor");
const work = args[0] || temporaryDirectory();
const errors = () => log().filter(m => m.severity <= 3).map(m => m.text);
const load = path => { answerFileDialog(path); editor.press("..."); };
const saveAs = path => { answerFileDialog(path); editor.press("Save As..."); };
const changes = what => waitFor(() => editor.captions().includes(what), "\"" + what + "\" behind \"Changes:\"", 3000);
const first = () => editor.captions();

menu("Plug-ins", "Overlay Editor...");
editor.moveTo(700, 0);
picture(work + "/files-empty.png");
const order = ["All Shapes", "Center", "Delete", "Delete All", "General Options", "File:", "...", "Attach:",
    "Auto-delete:", "Shape Controls", "Shape:", "Mouse:", "Edit", "Stop", "Name:", "Units", "LLA:", "Alt:", "Ang:",
    "Rng:", "Prec:", "Load HALVIS...", "Save", "Save As...", "Help...", "Close"];
const captions = first();
const places = order.map(text => captions.indexOf(text));
assert(places.every(at => at >= 0), "missing: " + order.filter((text, i) => places[i] < 0));
assertEqual(["Center", "Delete", "Delete All", "Save", "Save As...", "Help...", "Close"].map(text => editor.enabled(text)),
    [false, false, false, false, true, true, true]);
const tooltips = { "Center": "Center on the selected ZEL in HALVIS", "Delete": "Remove the selected shape",
    "Delete All": "Remove all shapes", "File:": "Currently loaded ZEL file",
    "...": "Load a ZEL file from file system to edit",
    "Auto-delete:": "Delete any ZEL files that were automatically created on exit",
    "Shape:": "Select a shape to add it", "Name:": "Name of the shape",
    "Edit": "Start editing the selected Shape using the mouse controls",
    "Stop": "Stop editing the selected Shape with the mouse controls",
    "Prec:": "Decimal points to use for precision",
    "Load HALVIS...": "Load a ZEL file currently loaded in HALVIS",
    "Save": "Save the current shapes to the current ZEL file and reload it in HALVIS",
    "Save As...": "Save the current shapes to a new ZEL file and load it in HALVIS",
    "Help...": "Launch the user manual", "Close": "Close this dialog" };
for (const caption in tooltips) assertEqual(editor.tooltip(caption), tooltips[caption], caption);
assertEqual(editor.options("Shape:")[0], "Add");

// Names, and the list that follows them.
editor.choose("Shape:", "Circle");
editor.press("Stop");
editor.choose("Shape:", "Polygon");
editor.press("Stop");
assertEqual(editor.items(), ["Circle 1", "Polygon 2"]);
editor.press("Delete#1");
editor.choose("Shape:", "Polygon");
editor.press("Stop");
assertEqual(editor.items(), ["Circle 1", "Polygon 3"], "a number is not given twice");
editor.fill("Name:", "Harbour");
assertEqual(editor.items()[1], "Harbour");
editor.press("Delete#1");

// Nothing to save is no file.
saveAs(work + "/empty.zel");
assert(!fileExists(work + "/empty.zel") && errors().some(text => text.includes("nothing to save")), errors());
editor.select("All Shapes", "Circle 1");
editor.fill("Lat:", "40 30 0 N");
editor.fill("Lon:", "5 0 0 E");
editor.fill("Radius:", "2000");
changes("Not saved");
picture(work + "/files-not-saved.png");
editor.press("Center");
assertNear(view.camera.lat, 40.5, 1e-4);
assertNear(view.camera.lon, 5, 1e-6);
assertNear(view.camera.range, 4000 * Math.SQRT2, 10, "from corner to corner of its box");
editor.fill("Radius:", "100");
editor.press("Center");
assertNear(view.camera.range, 5000, 1e-6, "not nearer than 5 km");

// Save As, Save, the host's copy.
const file = work + "/circle.zel";
saveAs(file);
changes("None");
assertEqual(editor.value("File:"), file);
assert(!overlay("circle.zel").shown, "the editor's shapes are drawn in its place");
editor.press("Close");
assert(!editor.shown && overlay("circle.zel").shown);
menu("Plug-ins", "Overlay Editor...");
assert(!overlay("circle.zel").shown);
editor.select("All Shapes", "Circle 1");
editor.fill("Radius:", "300");
changes("Not saved");
editor.press("Save");
changes("None");
assertEqual(overlays().filter(o => o.name === "circle.zel").length, 1, "shown once");
assert(readFile(file).includes("radius 300\n"));

// A save that fails.
editor.fill("Radius:", "400");
saveAs(work + "/no-such-directory/x.zel");
assert(errors().some(text => text.includes("No such file or directory")));
changes("Not saved");
assertEqual(editor.value("File:"), file);
editor.press("Save");

// A file without shapes, a cancelled dialog.
writeFile(work + "/nothing.zel", "# nothing\n");
for (const path of [work + "/nothing.zel", null]) {
    load(path);
    assertEqual(editor.items(), ["Circle 1"]);
}

// From the host: the list, the choice, OK.
writeFile(work + "/second.zel", "start\ncircle\ncenterll 10 20\nradius 5\n3d name Far\nend\n");
const ship = addPlatform({ name: "Ship", lat: 10, lon: 20 });
openOverlay(work + "/second.zel", ship);
editor.press("Load HALVIS...");
const existing = dialog("Select Existing ZEL");
existing.moveTo(100, 100);
assertEqual(existing.items(), [work + "/second.zel\tShip", file + "\tAbsolute"]);
existing.press("Refresh");
picture(work + "/files-existing.png");
existing.press("OK");
assert(errors().some(text => text.includes("No overlay is selected")));
existing.select("", 0);
existing.press("OK");
assert(!existing.shown);
assertEqual([editor.items()[0], editor.value("File:")], ["Far", work + "/second.zel"]);
assert(editor.captions().includes("Ship") && overlay("circle.zel").shown && !overlay("second.zel").shown);

// Delete All: the file stays, and nothing is edited any more.
editor.press("Delete All");
assertEqual([editor.items(), editor.value("File:"), editor.enabled("Save")], [[], "", false]);
assert(overlay("second.zel").shown && fileExists(work + "/second.zel"));
overlayMenu("circle.zel", "Send to Overlay Editor");
assertEqual(editor.value("File:"), file);

editor.press("Help...");
assert(errors().some(text => text.includes("Could not find Overlay Editor Documentation")));
