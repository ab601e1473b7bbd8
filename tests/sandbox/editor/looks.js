// Every dialog and every panel fits the screen, and the Tab key goes down the form. With a directory as
// argument it leaves a picture of each.
const editor = dialog("Overlay Editor");
const platforms = dialog("Select Platform");
const existing = dialog("Select Existing ZEL");
menu("Plug-ins", "Overlay Editor...");

function show(box, name) {
    wait(20);
    const place = box.geometry;
    assert(place.x >= 0 && place.y >= 0 && place.x + place.width <= place.screenWidth &&
           place.y + place.height <= place.screenHeight, name + " leaves the screen: " + JSON.stringify(place));
    if (args[0]) box.picture(args[0] + "/" + name + ".png");
}

show(editor, "editor");
assert(editor.geometry.width < 845, "as narrow as can be: " + editor.geometry.width);
const kinds = editor.options("Shape:").slice(1);
assert(kinds.length >= 15, "the kinds of shapes: " + kinds);
for (const kind of kinds) {
    editor.choose("Shape:", kind);
    editor.press("Stop");
    show(editor, kind.replace(" ", "-"));
    // What nobody touched would go when another is selected.
    editor.fill("Name:", kind + " seen");
}

/// The Tab key, from one control to the next.
function tabThrough(paths) {
    editor.type(paths[0], editor.value(paths[0]));
    for (let i = 1; i < paths.length; ++i) {
        editor.leave(paths[i - 1]);
        assert(editor.focused(paths[i]), "after " + paths[i - 1] + " the keyboard goes to " + paths[i]);
    }
}

const style = ["Line Width:", "Line Color:", "Filled:", "Fill Color:"];
function selectKind(kind) { editor.select("All Shapes", editor.items("All Shapes").find(i => i.startsWith(kind + " "))); }
selectKind("Wedge");
tabThrough(["Prec:", "Pos:", "Shape:"]);
tabThrough(["Name:", "Next:", "Draw:", "Lat:", "Lon:", "Shape Controls > Alt:", "X Radius:", "Y Radius:", "Height:", "Start Angle:",
            "End Angle:", ...style, "Load HALVIS..."]);
selectKind("Orbit");
tabThrough(["Name:", "Next:", "Draw:", "Center 1: > Lat:", "Center 1: > Lon:", "Center 1: > Alt:", "Center 2: > Lat:", "Center 2: > Lon:",
            "Center 2: > Alt:", "Radius:", ...style]);
assertEqual(editor.tooltip("Center 2: > Lat:"), "Latitude in specified units");

// Captions that stand twice: the message tells how to name each.
selectKind("Polygon");
assertThrows(() => editor.press("Delete"), /"All Shapes > Delete", "Points > Delete"/);
editor.press("All Shapes > Delete");
assert(!editor.items("All Shapes").some(i => i.startsWith("Polygon ")), "the shape is gone");

// Nonsense in a spinner is refused as a whole, and stays until it is left twice.
selectKind("Circle");
for (const nonsense of ["", "3.7", "wide", "-5", "99999"]) {
    editor.fill("Line Width:", nonsense);
    assertEqual(editor.value("Line Width:"), nonsense);
    assert(editor.captions().some(text => text.startsWith(`Line Width: "${nonsense}" is no whole number from 0 to 9999`)));
    editor.leave("Line Width:");
    assertEqual(editor.value("Line Width:"), "2", nonsense);
}

editor.fill("Radius:", "45,5");
for (const shown of ["45,5", "0.00"]) {
    editor.key("Radius:", "End");
    editor.leave("Radius:");
    assertEqual(editor.value("Radius:"), shown, "left");
}

// From shape to shape nothing moves but what the panel shows.
const fixed = ["All Shapes", "All Shapes > Center", "File:", "Changes:", "Attach:", "LLA:", "Pos:", "Shape:", "Name:", "Draw:", "Save"];
let standing;
for (const kind of ["Circle", "Rectangle", "Orbit", "Line", "Text", "Wedge", "Free Draw"]) {
    selectKind(kind);
    if (kind === "Wedge") editor.fill("X Radius:", "45,5");
    wait(50);
    const places = JSON.stringify([editor.geometry, ...fixed.map(path => editor.place(path))]);
    assertEqual(places, standing = standing || places, kind);
    if (args[0]) editor.picture(args[0] + "/selected-" + kind.replace(" ", "-") + ".png");
}
selectKind("Circle");

// Without its left column it is narrower, and the right side stays where it was.
const whole = editor.geometry;
for (const width of [500, whole.width + 1]) {
    pressKey("F9");
    wait(50);
    const now = editor.geometry;
    assert(now.width < width && now.x + now.width === whole.x + whole.width, JSON.stringify([whole, now]));
}
assertEqual(editor.geometry, whole);

// A closed menu is no command line.
const count = editor.items("All Shapes").length;
for (const key of ["WheelDown", "WheelUp", "Down", "C"]) editor.key("Shape:", key);
assertEqual(editor.items("All Shapes").length, count, "keys and wheel on the closed menu add nothing");

// What somebody else has named makes no dialog wider.
const before = editor.geometry.width;
addPlatform({ name: "A ship with a name " + "that goes on and on ".repeat(10), lat: 0, lon: 0 });
editor.check("Attach:");
show(platforms, "platforms");
const check = platforms.place("Center On Host");
assert(check.y + check.height <= platforms.place("OK").y, "nothing is scrolled out of sight");
platforms.select("", 0, { enter: true });
assert(!platforms.shown && editor.checked("Attach:"), "Enter on a row chooses it");
show(editor, "long-name");
assert(editor.geometry.width < 1.2 * before, "the editor with a long name: " + editor.geometry.width + ", " + before);
const work = temporaryDirectory() + "/a-directory-with-a-long-name/and-another-one-of-the-same-kind-below-it/plans";
makeDirectory(work);
for (const name of ["north", "south"]) {
    writeFile(work + "/" + name + ".zel", "start\n3d name Far\ncircle\ncenterll 10 20\nradius 5\nend\n");
    openOverlay(work + "/" + name + ".zel");
}
setSetting("Dialogs/Select Existing ZEL", "731x377");
// Alt and a letter is the same command, whichever panel is shown.
selectKind("Line");
menu("Plug-ins", "Overlay Editor...");
pressKey("Alt+L");
waitFor(() => existing.shown, "Load HALVIS...");
show(existing, "existing");
assertEqual([existing.geometry.width, existing.geometry.height], [731, 377], "as large as it was left");
existing.select("", 1);
existing.press("OK");
show(editor, "long-path");
