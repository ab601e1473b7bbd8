// Looking at every shape of a file, field by field with the Tab key, changes not one byte of it.
const editor = dialog("Overlay Editor");
const picker = dialog("Select Platform");
const work = args[0] || temporaryDirectory();
const samples = scriptDirectory + "/../../../samples/";
menu("Plug-ins", "Overlay Editor...");
editor.moveTo(700, 0);

function load(path) {
    answerFileDialog(path);
    editor.press("...");
}
function saved(name) {
    answerFileDialog(work + "/" + name);
    editor.press("Save As...");
    return readFile(work + "/" + name);
}
function lookAtAll(what) {
    const before = saved("before.zel");
    const count = editor.items("All Shapes").length;
    for (const [system, unit, precision] of [["LLA", "nm", 0], ["MGRS", "m", 2]]) {
        editor.choose("Pos:", system);
        editor.choose("Rng:", unit);
        editor.fill("Prec:", precision);
        for (let i = 0; i < count; i += count > 50 ? 20 : 1) {
            editor.select("All Shapes", i);
            for (const field of ["Lat:#1", "Lon:#1", "GZD:#1", "Easting/Northing:#1", "X:#1", "Z:#1", "Radius:", "X Radius:",
                                 "Width:", "Height:", "Start Angle:", "Line Width:"])
                if (editor.has(field)) editor.leave(field);
            for (const step of ["->", "<-"])
                if (editor.has(step) && editor.enabled(step)) editor.press(step);
        }
    }
    editor.press("Close");
    menu("Plug-ins", "Overlay Editor...");
    assert(before.length > 1000, what + ": something is saved");
    assert(saved("after.zel") === before, what + ": looking changes nothing");
}

// It has offsets from a reference point, which is a platform while the file is edited.
load(samples + "gallery.zel");
assertEqual(platforms().map(p => p.name), ["ZEL Reference Point"]);
lookAtAll("the gallery");
// Coasts as offsets from a platform.
load(samples + "coast-110m.zel");
addPlatform({ name: "Ship", lat: 36.123456789, lon: 14.987654321, alt: 12 });
editor.select("All Shapes", 0);
editor.check("Attach:");
picker.select("", "Ship");
picker.press("OK");
lookAtAll("an attached overlay");
assert(/xyz? /.test(readFile(work + "/after.zel")), "it is saved as offsets");
