// What a user may do in the middle of a drag, and with a text that is typed but not entered yet.
const editor = dialog("Overlay Editor");
const existing = dialog("Select Existing ZEL");
const work = temporaryDirectory();
const here = { lat: 42, lon: 5 };
const edge = { lat: 42, lon: 7 };
view.camera = { lat: 40, lon: 6, alt: 0, range: 4000000, azimuth: 0, elevation: 90 };
menu("Plug-ins", "Overlay Editor...");
editor.moveTo(820, 20);

function startCircle() {
    editor.choose("Shape:", "Circle");
    view.move(here);
    view.press(here);
    view.move(edge);
    waitFor(() => overlays().some(o => o.text.includes("0xff0073ff")), "the rubber band");
}
function drawCircle() {
    startCircle();
    view.release(edge);
    assertEqual(editor.checked("Edit"), true);
}
function shapesInView() { return overlays().filter(o => !o.path).length; }

// A file to load, written by the text that is still in its field when the button is pressed.
drawCircle();
editor.type("Radius:", "123 km");
answerFileDialog(work + "/circle.zel");
editor.press("Save As...");
assert(readFile(work + "/circle.zel").includes("\nradius 123000\n"), "the typed radius is saved");
editor.press("Delete All");

const interruptions = {
    "Delete": [() => editor.press("Delete"), 0],
    "Delete All": [() => editor.press("Delete All"), 0],
    "load": [() => { answerFileDialog(work + "/circle.zel"); editor.press("..."); }, 1],
    "load from the host": [() => {
        openOverlay(work + "/circle.zel");
        editor.press("Load HALVIS...");
        existing.moveTo(60, 60);
        existing.select("", 0);
        existing.press("OK");
    }, 1],
    "sent from the host's list": [() => overlayMenu("circle.zel", "Send to Overlay Editor"), 1],
    "cleared scenario": [() => clearScenario("cleared"), 0],
    "replaced scenario": [() => clearScenario("replaced"), 0],
};
for (const name in interruptions) {
    const [interrupt, left] = interruptions[name];
    startCircle();
    interrupt();
    view.move(here);
    view.release(edge);
    wait(50);
    assertEqual(editor.items().length, left, name);
    assertEqual(shapesInView(), left, name + ", in the view");
    assertEqual([editor.enabled("Edit"), editor.checked("Edit")], [false, false], name);
    if (left) editor.press("Delete All");
}

// Saving in the middle of a drag: the file gets what is complete, and the drag goes on.
drawCircle();
startCircle();
const already = log().length;
answerFileDialog(work + "/half.zel");
editor.press("Save As...");
assertEqual(readFile(work + "/half.zel").match(/^circle$/mg).length, 1);
const told = log().slice(already).map(entry => entry.text).join();
assert(told.includes("Not complete, and not in " + work + "/half.zel: Circle "), told);
assert(editor.captions().includes("Not saved"));
view.move(edge);
view.release(edge);
editor.press("Save");
assertEqual(readFile(work + "/half.zel").match(/^circle$/mg).length, 2);
editor.press("Delete All");
overlayMenu("half.zel", "Unload");

// Closed in the middle of a drag, the plug-in is gone with all that it made.
view.camera = { lat: 40, lon: 6, alt: 0, range: 4000000, azimuth: 0, elevation: 90 };
startCircle();
closePlugin("OverlayEditor");
assertEqual([shapesInView(), dialogs().length, menuItems("Plug-ins").length], [0, 0, 0]);
assert(!readFile("/proc/self/maps").includes("OverlayEditor.so"), "the library is unloaded");
view.release(edge);
