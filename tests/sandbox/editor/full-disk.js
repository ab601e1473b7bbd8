// A user who saves where it cannot be: on a disk that is full, on one that is read-only, into a device. The log says
// why, the old file stands, the shapes stay, and with room again nothing is lost.
const editor = dialog("Overlay Editor");
const disk = environment("FULL_DISK");
const readOnly = environment("READ_ONLY_DISK");
menu("Plug-ins", "Overlay Editor...");
editor.moveTo(820, 20);
editor.choose("Shape:", "Circle");
editor.fill("Lat:", "41.5 N");
editor.fill("Lon:", "12.25 E");
editor.fill("Radius:", "12.3456789 nm");

let seen = log().length;
/// The errors since the last call.
function errors() {
    const entries = log().slice(seen).filter(entry => entry.severity <= 2).map(entry => entry.text);
    seen = log().length;
    return entries;
}
function saveAs(path) {
    answerFileDialog(path);
    editor.press("Save As...");
    return errors();
}
if (disk) {
    for (const [path, reason] of [[disk + "/device.zel", "what has this name is no file"],
                                  [readOnly + "/plan.zel", `no file can be made in ${readOnly}: the disk can only be read`]]) {
        const [told, ...more] = saveAs(path);
        assert(told.startsWith("Not saved: " + reason) && told.includes(path) && more.length === 0, told);
        assert(editor.captions().some(text => text.startsWith("Not saved: " + reason)), "the dialog says so, too");
        assertEqual([editor.items(), editor.value("File:"), editor.enabled("Save")], [["Circle 1"], "", false]);
    }

    // There is room at first, then none.
    const plan = disk + "/plan.zel";
    assertEqual(saveAs(plan), []);
    const old = readFile(plan);
    assert(old.includes("\nradius 22864.1973228\n"), "saved");
    try {
        for (let i = 0; i < 20; ++i) writeFile(disk + "/filler" + i, "x".repeat(4096));
    } catch (full) {
    }
    editor.fill("Name:", "Harbour limit");
    editor.press("Save");
    assertEqual(errors(), [`Not saved: the disk is full. ${plan} is as it was`]);
    assertEqual(readFile(plan), old, "the old file");
    assertEqual(listFiles(disk).filter(name => !name.startsWith("filler")), ["device.zel", "plan.zel"]);
    removeFile(disk + "/filler0");
    editor.press("Save");
    assertEqual(errors(), []);
    assert(readFile(plan).includes("\n3d name Harbour limit\n"), "saved in the second try");
} else {
    print("no right to mount a small disk: nothing was tried");
}
