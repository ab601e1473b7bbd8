// Every kind of shape by its fields alone, in mixed units: what is typed is what is saved, and it comes back from the
// file to the last byte.
const editor = dialog("Overlay Editor");
const work = temporaryDirectory();
const file = work + "/typed.zel";
menu("Plug-ins", "Overlay Editor...");
editor.moveTo(700, 0);

const typed = { "Lat:#1": "40.123456789", "Lon:#1": "5 59 15.5 E", "Alt:#1": "123.456", "Radius:": "3.3 nm", "X Radius:": "4.4 km",
                "Y Radius:": "2.2 km", "Height:": "1234.5678 ft", "Width:": "7.7 km", "Start Angle:": "12.25", "End Angle:": "200 30 15" };
// A foot of the file format is 0.30479999 m. The axes are diameters; the sweep is 200.50416667 less 12.25 degrees.
const saved = {
    circle: ["radius 6111.6"], sphere: ["radius 6111.6"], hemisphere: ["radius 6111.6"],
    ellipse: ["majoraxis 8800", "minoraxis 4400"], arc: ["majoraxis 8800", "anglestart 12.25", "angledeg 188.254166666667"],
    cylinder: ["majoraxis 8800", "minoraxis 4400", "height 376.296253094322"],
    ellipsoid: ["majoraxis 8800", "minoraxis 4400", "height 376.296253094322"], cone: ["radius 6111.6", "height 376.296253094322"],
    orbit: ["radius 6111.6", "centerll2 40.5 6.5 0"],
};
for (const kind of editor.options("Shape:").slice(1)) {
    if (kind === "Free Draw") continue;
    editor.choose("Shape:", kind);
    editor.press("Stop");
    for (const field in typed)
        if (editor.has(field) && editor.enabled(field)) editor.fill(field, typed[field]);
    if (editor.has("->")) {
        editor.press("->");
        editor.fill("Lat:#1", "41.5");
        editor.press("->");
        editor.fill("Lon:#1", "7.25");
    }
    if (kind === "Orbit") {
        editor.fill("Center 2: > Lat:", "40.5");
        editor.fill("Center 2: > Lon:", "6.5");
    }
}
answerFileDialog(file);
editor.press("Save As...");
const text = readFile(file);
const blocks = text.split("start\n").slice(1);
assertEqual(blocks.length, 15);
for (const block of blocks) {
    const kind = block.split(/\s/)[0];
    for (const line of saved[kind] || [])
        assert(block.includes("\n" + line + "\n"), kind + " without " + line + ": " + block);
    if (saved[kind]) assert(/\ncenterlla? 40\.123456789 5\.98763888888889( 123\.456)?\n/.test(block), block);
}

answerFileDialog(file);
editor.press("...");
editor.press("Save");
assertEqual(readFile(file), text);
