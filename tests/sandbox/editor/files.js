// The dialog's own work with hosts, files and hands: its layout, and one round of drawing, saving, loading, deleting.
const editor = dialog("Overlay Editor");
const work = args[0] || temporaryDirectory();
const changes = what => waitFor(() => editor.captions().includes(what), "\"" + what + "\" behind \"Changes:\"", 3000);

menu("Plug-ins", "Overlay Editor...");
editor.moveTo(700, 0);
picture(work + "/files-empty.png");
const order = ["All Shapes", "Center", "Delete", "Delete All", "General Options", "File:", "...", "Attach:",
    "Auto-delete:", "Shape Controls", "Shape:", "Mouse:", "Edit", "Stop", "Name:", "Units", "LLA:", "Alt:", "Ang:",
    "Rng:", "Prec:", "Load HALVIS...", "Save", "Save As...", "Help...", "Close"];
const captions = editor.captions();
assertEqual(order.filter(text => !captions.includes(text)), [], "captions that are missing");
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

editor.choose("Shape:", "Circle");
editor.press("Stop");
editor.fill("Name:", "Harbour");
assertEqual(editor.items(), ["Harbour"]);
editor.fill("Lat:", "40 30 0 N");
editor.fill("Lon:", "5 0 0 E");
editor.fill("Radius:", "2000");
changes("Not saved");
editor.press("Center");
assertNear(view.camera.lat, 40.5, 1e-4);
assertNear(view.camera.range, 4000 * Math.SQRT2, 10, "from corner to corner of its box");

// Save As, Save; the host's copy is shown while the editor is not.
const file = work + "/circle.zel";
answerFileDialog(file);
pressKey("Ctrl+S");
changes("None");
assertEqual(editor.value("File:"), file);
assert(!overlay("circle.zel").shown, "the editor's shapes are drawn in its place");
editor.press("Close");
assert(!editor.shown && overlay("circle.zel").shown);
menu("Plug-ins", "Overlay Editor...");
assert(!overlay("circle.zel").shown);
editor.select("All Shapes", "Harbour");
editor.fill("Radius:", "300");
pressKey("Ctrl+S");
changes("None");
assertEqual(overlays().filter(o => o.name === "circle.zel").length, 1, "shown once");
assert(readFile(file).includes("radius 300\n"));

// A file dialog that is cancelled. Delete All: the file stays, and nothing is edited any more.
answerFileDialog(null);
editor.press("...");
assertEqual(editor.items(), ["Harbour"]);
editor.press("Delete All");
assertEqual([editor.items(), editor.value("File:"), editor.enabled("Save")], [[], "", false]);
assert(overlay("circle.zel").shown && fileExists(file));
