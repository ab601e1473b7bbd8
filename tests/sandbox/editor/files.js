// The dialog's own work with hosts, files and hands: one round of drawing, saving, loading, deleting.
const editor = dialog("Overlay Editor");
const work = args[0] || temporaryDirectory();
const changes = what => waitFor(() => editor.captions().includes(what), "\"" + what + "\" behind \"Changes:\"", 3000);

menu("Plug-ins", "Overlay Editor...");
editor.moveTo(700, 0);
picture(work + "/files-empty.png");
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
