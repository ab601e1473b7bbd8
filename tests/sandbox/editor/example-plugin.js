// The example plug-in hears of what the editor saves, whichever of the two comes and goes first.
const libraries = environment("PROBE_DIRECTORY");
const work = temporaryDirectory();
const heard = () => log().filter(entry => entry.source === "SavedOverlays").map(entry => entry.text);
view.camera = { lat: 40, lon: 6, alt: 0, range: 4000000, azimuth: 0, elevation: 90 };

function save(name) {
    menu("Plug-ins", "Overlay Editor...");
    const editor = dialog("Overlay Editor");
    editor.moveTo(820, 20);
    editor.choose("Shape:", "Circle");
    view.move(42, 5);
    view.drag({ lat: 42, lon: 5 }, { lat: 42, lon: 7 });
    answerFileDialog(work + "/" + name);
    editor.press("Save As...");
    assert(fileExists(work + "/" + name));
}

assert(openPlugin(libraries + "/SavedOverlays.so"));
save("a.zel");
assertEqual(heard(), ["saved: " + work + "/a.zel"]);
assertEqual(closePlugin("SavedOverlays"), { gone: true, leftBehind: "" });
save("b.zel");
assertEqual(heard().length, 1, "nobody listens any more");

// The editor goes and comes back before the example looks; it finds it again.
assert(openPlugin(libraries + "/SavedOverlays.so"));
assertEqual(closePlugin("OverlayEditor"), { gone: true, leftBehind: "" });
assert(openPlugin(libraries + "/OverlayEditor.so"));
view.camera = { lat: 40, lon: 6, alt: 0, range: 4100000, azimuth: 0, elevation: 90 };
wait(200);
save("c.zel");
assertEqual(heard().length, 2);
assertEqual(closePlugin("OverlayEditor").gone, true);
assertEqual(closePlugin("SavedOverlays"), { gone: true, leftBehind: "" });
