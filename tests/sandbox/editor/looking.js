// Looking at every shape of a file, in every unit, changes not one byte of it.
const editor = dialog("Overlay Editor");
const work = args[0] || temporaryDirectory();
const samples = scriptDirectory + "/../../../samples/";
menu("Plug-ins", "Overlay Editor...");
editor.moveTo(700, 0);

function saved(name) {
    answerFileDialog(work + "/" + name);
    editor.press("Save As...");
    return readFile(work + "/" + name);
}

/// Opens and closes the panel of every shape, and walks through the fields of some with the Tab key.
function lookAtAll(what) {
    const before = saved("before.zel");
    const count = editor.items("All Shapes").length;
    for (const [system, unit, precision] of [["LLA", "nm", 0], ["MGRS", "m", 2]]) {
        editor.choose("Pos:", system);
        editor.choose("Rng:", unit);
        editor.fill("Prec:", precision);
        for (let i = 0; i < count; ++i) {
            editor.select("All Shapes", i);
            if (count > 50 && i % 20 !== 0) continue;
            for (const field of ["Lat:#1", "Lon:#1", "GZD:#1", "Easting/Northing:#1", "X:#1", "Z:#1", "Radius:", "X Radius:",
                                 "Width:", "Height:", "Start Angle:", "Line Width:"])
                if (editor.has(field)) editor.leave(field);
            for (const step of ["->", "<-"])
                if (editor.has(step) && editor.enabled(step)) editor.press(step);
        }
    }
    editor.press("Close");
    menu("Plug-ins", "Overlay Editor...");
    const after = saved("after.zel");
    assert(before.length > 1000, what + ": something is saved");
    assert(after === before, what + ": looking changes nothing");
    print(what + ": " + count + " shapes, " + before.length + " bytes");
}

for (const name of ["countries-110m.zel", "gallery.zel"]) {
    answerFileDialog(samples + name);
    editor.press("...");
    lookAtAll(name);
}

// Coasts as offsets from a platform. (The gallery is such a file: it has offsets from a reference point.)
answerFileDialog(samples + "coast-110m.zel");
editor.press("...");
const ship = addPlatform({ name: "Ship", lat: 36.123456789, lon: 14.987654321, alt: 12 });
const platforms = dialog("Select Platform");
editor.select("All Shapes", 0);
editor.check("Attach:");
platforms.select("", "Ship");
platforms.press("OK");
assert(editor.checked("Ship"), "attached");
lookAtAll("an attached overlay");
assert(/xyz? /.test(readFile(work + "/after.zel")), "it is saved as offsets");
