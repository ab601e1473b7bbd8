// Nothing unsaved vanishes: whatever gives the shapes up writes them to a dated file first, and the log says where.
const editor = dialog("Overlay Editor");
const existing = dialog("Select Existing ZEL");
const work = temporaryDirectory();
const kept = work + "/kept";
setSetting("AutoSaveZelDir", kept);
const other = work + "/other.zel";
writeFile(other, "start\n3d name Other\ncircle\ncenterll 42 5\nradius 90\nrangeunits km\nend\n");
assert(openOverlay(other));
menu("Plug-ins", "Overlay Editor...");
editor.moveTo(700, 0);

const plugin = plugins()[0].path;
const ways = {
    "load": () => { answerFileDialog(other); editor.press("..."); },
    "load from the host": () => {
        editor.press("Load HALVIS...");
        existing.moveTo(60, 60);
        existing.select("", 0);
        existing.press("OK");
    },
    "sent from the host's list": () => overlayMenu("other.zel", "Send to Overlay Editor"),
    "delete all": () => editor.press("Delete All"),
    "cleared scenario": () => clearScenario("cleared"),
    "replaced scenario": () => clearScenario("replaced"),
    "closed scenario": () => clearScenario("closed"),
    "the end": () => {
        assert(closePlugin("OverlayEditor").gone);
        assert(openPlugin(plugin));
        menu("Plug-ins", "Overlay Editor...");
        editor.moveTo(700, 0);
    },
};
let tries = 1000;
let files = 0;
for (const way in ways) {
    // Saved, and looked at: there is nothing to rescue.
    for (const saved of [true, false]) {
        const radius = ++tries + ".123456789";
        editor.choose("Shape:", "Circle");
        editor.fill("Name:", "Mine");
        editor.fill("Lat:", "41.987654321");
        editor.fill("Radius:", radius);
        if (saved) {
            answerFileDialog(work + "/saved.zel");
            editor.press("Save As...");
            editor.choose("Rng:", "nm");
            editor.choose("Rng:", "m");
        }
        const before = log().length;
        ways[way]();
        if (!overlays().some(o => o.path === other)) openOverlay(other);
        const told = log().slice(before).map(entry => entry.text);
        const now = fileExists(kept) ? listFiles(kept).filter(name => name.startsWith("Unsaved ")) : [];
        if (saved) {
            assertEqual(now.length, files, way + ", saved");
        } else {
            assertEqual(now.length, ++files, way);
            const path = told.map(text => /unsaved shapes are kept in (.*)/.exec(text)).filter(match => match)[0][1];
            const text = readFile(path);
            assert(/Unsaved \d{4}-\d\d-\d\d \d\d-\d\d-\d\d( \d+)?\.zel$/.test(path), path);
            assert(text.includes("\ncenterlla 41.987654321 ") && text.includes("\nradius " + radius + "\n"), text);
        }
        if (editor.enabled("Delete All")) editor.press("Delete All");
    }
}
