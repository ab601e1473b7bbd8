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
function shapesInView() { return overlays().filter(o => !o.path).length; }

// A file to load, written by the text that is still in its field when the button is pressed.
startCircle();
view.release(edge);
editor.type("Radius:", "123 km");
answerFileDialog(work + "/circle.zel");
editor.press("Save As...");
assert(readFile(work + "/circle.zel").includes("\nradius 123000\n"), "the typed radius is saved");
editor.press("Delete All");

const interruptions = {
    "Delete": [() => editor.press("Delete"), 0],
    "load": [() => { answerFileDialog(work + "/circle.zel"); editor.press("..."); }, 1],
    "load from the host": [() => {
        openOverlay(work + "/circle.zel");
        editor.press("Load HALVIS...");
        existing.moveTo(60, 60);
        existing.select("", 0);
        existing.press("OK");
    }, 1],
    "sent from the host's list": [() => overlayMenu("circle.zel", "Send to Overlay Editor"), 1],
    "cleared scenario": [() => clearScenario("cleared"), 0]
};
for (const name in interruptions) {
    const [interrupt, left] = interruptions[name];
    startCircle();
    interrupt();
    view.move(here);
    view.release(edge);
    wait(50);
    assertEqual([editor.items().length, shapesInView(), editor.enabled("Edit"), editor.checked("Edit")],
                [left, left, false, false], name);
    if (left) editor.press("Delete All");
}

// Closed in the middle of a drag, the plug-in is gone with all that it made.
view.camera = { lat: 40, lon: 6, alt: 0, range: 4000000, azimuth: 0, elevation: 90 };
startCircle();
closePlugin("OverlayEditor");
assertEqual([shapesInView(), dialogs().length, menuItems("Plug-ins").length], [0, 0, 0]);
assert(!readFile("/proc/self/maps").includes("OverlayEditor.so"), "the library is unloaded");
view.release(edge);
