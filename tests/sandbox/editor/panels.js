// The panel of every kind that a file can bring, in each unit; and opening one changes nothing.
const editor = dialog("Overlay Editor");
const work = args[0] || temporaryDirectory();
menu("Plug-ins", "Overlay Editor...");
editor.moveTo(820, 0);

const block = (kind, lines) => "start\n" + kind + "\naltitudeunits m\nrangeunits m\n" + lines + "\nend\n\n";
const corners = "lla 42 5 0\nlla 42 6 0\nlla 43 6 0\nlla 43 5 0\n";
writeFile(work + "/kinds.zel", "version 2\n\n" +
    block("line", "lla 41 5 100\nlla 42.123456789 6 100\nlla 41 7 100\n3d name Route") +
    block("polygon", "lla 41 8 0\nlla 42 9.5 0\nlla 41 10 0\n3d name Area") +
    block("polygon", corners + "3d name Box") +
    block("annotation Here", "centerlla 40 6 0\nfontname times.ttf\nfontsize 14") +
    block("orbit", "centerll 40 3\ncenterll2 40 4\nradius 20000\n3d name Orbit"));
answerFileDialog(work + "/kinds.zel");
editor.press("...");
answerFileDialog(work + "/before.zel");
editor.press("Save As...");

for (const item of editor.items()) {
    editor.select("All Shapes", item);
    wait(30);
    editor.picture(work + "/panel-" + item + ".png");
}
answerFileDialog(work + "/after.zel");
editor.press("Save As...");
assertEqual(readFile(work + "/after.zel"), readFile(work + "/before.zel"), "looking changes nothing");

editor.select("All Shapes", "Route");
assertEqual(editor.value("Alt:#1"), "100.00");
editor.press("->");
editor.fill("Lon:", "6 30 0 E");
editor.fill("Alt:#1", "3000 ft");
editor.press("->");
editor.press("->");
editor.fill("Lat:", "40");
editor.picture(work + "/panel-new-point.png");
editor.press("Save");
const text = readFile(work + "/after.zel");
assert(/lla 42\.123456789 6\.5 914\.39997\n/.test(text), "the typed coordinates, and the digits of the other: " + text);

editor.select("All Shapes", "Box");
editor.check("Corner 1");
assertNear(editor.number("Alt:#1"), 0, 0);
editor.fill("Width:", "5 nm");
editor.fill("Height:", "3000 ft");
assertEqual([editor.value("Width:"), editor.value("Height:")], ["9260.00", "914.40"]);
editor.choose("Rng:", "km");
assertEqual([editor.value("Width:"), editor.value("Height:")], ["9.26", "0.91"]);
editor.check("Corner 2");
assertEqual([editor.enabled("Width:"), editor.enabled("Lat:#2")], [false, true]);
editor.picture(work + "/panel-corner.png");

editor.select("All Shapes", "Orbit");
editor.fill("Radius:", "wide");
assertEqual(editor.value("Radius:"), "20.00");
assert(log().some(m => m.text.includes("wide")), "the log says why");

editor.select("All Shapes", "Here");
assertEqual([editor.value("Font:"), editor.value("Font Size:")], ["times.ttf", "14"]);
editor.choose("Pos:", "MGRS");
assert(editor.has("GZD:") && !editor.has("Lat:"), "the position as an MGRS reference");
editor.fill("GZD:", "4q fj 12345 67890");
assertEqual([editor.value("GZD:"), editor.value("Easting/Northing:")], ["04Q FJ", "12345 67890"]);
editor.picture(work + "/panel-mgrs.png");
