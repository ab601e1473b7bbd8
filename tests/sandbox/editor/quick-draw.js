// Quick drawing from the actions menu: every command, as a user gives it.
const work = temporaryDirectory();
const pictures = args[0];
const directory = work + "/shapes";
const here = { lat: 42, lon: 5 };
const edge = { lat: 42, lon: 7 };
view.camera = { lat: 40, lon: 6, alt: 0, range: 4000000, azimuth: 0, elevation: 90 };

const action = label => menu("Actions", label);
const checked = label => menuItems("Actions").find(item => item.text === label).checked;
const quickFiles = () => overlays().filter(o => o.path).map(o => o.name);
const shapesInView = () => overlays().filter(o => !o.path).length;
const notes = () => screenTexts().map(note => note.text).sort();
function finish() { view.click({ lat: 30, lon: 0 }, { button: "right" }); }
function drawCircle() {
    action("Quick Circle Draw");
    view.move(here);
    view.drag(here, edge);
    finish();
}

assertEqual(menuItems("Actions").length, 20, "nineteen quick commands and the dialog's");
makeDirectory(directory);
answerFileDialog(directory);
action("Set Quick Shape Directory");
assertEqual(setting("AutoSaveZelDir"), directory);

// A circle is a file as soon as the right button is pressed.
drawCircle();
assertEqual([quickFiles(), shapesInView()], [["Circle_1.zel"], 0]);
assert(readFile(directory + "/Circle_1.zel").includes("linecolor hex 0xff0000ff"), "red at first");
clearScenario("cleared");
assertEqual(quickFiles(), ["Circle_1.zel"], "before the dialog was opened it stays");

// One colour is checked at a time; one chosen while drawing holds for the shape being drawn.
const colors = { Red: "ff0000ff", Blue: "ffff0000", Yellow: "ff00ffff", Green: "ff00ff00",
                 Orange: "ff00aaff", Purple: "ffff00ff", White: "ffffffff", Black: "ff000000" };
action("Quick Circle Draw");
view.move(here);
view.drag(here, edge);
for (const name in colors) {
    action(name + " Shape Color");
    assertEqual(Object.keys(colors).filter(color => checked(color + " Shape Color")), [name]);
    assert(overlays().some(o => !o.path && o.text.includes(colors[name])), name);
}
action("Yellow Shape Color");
finish();
const second = readFile(directory + "/Circle_2.zel");
assert(second.includes(colors.Yellow) && second.includes("3d name Circle 2\n"), second);

// Every other kind takes the same colour, and its name and its file the same number.
const corners = [{ lat: 40, lon: 3 }, { lat: 42, lon: 5 }, { lat: 40, lon: 8 }];
const kinds = { "Quick Line Draw": ["Line", true], "Quick Poly Draw": ["Polygon", true],
                "Quick Free Draw": ["Free Draw", false], "Quick Rectangle Draw": ["Rectangle", false],
                "Quick Triangle Draw": ["Triangle", false] };
function drawKind(label) {
    action(label);
    view.move(corners[0]);
    if (kinds[label][1])
        for (const corner of corners) {
            view.move(corner);
            view.click(corner);
        }
    else
        view.drag(corners[0], corners[1], { steps: 10 });
    finish();
}
for (const label in kinds) {
    drawKind(label);
    const kind = kinds[label][0];
    const text = readFile(directory + "/" + kind + "_2.zel");
    assert(text.includes("3d name " + kind + " 2\n") && text.includes(colors.Yellow), text);
    const points = text.split("\n").filter(line => line.startsWith("lla ")).length;
    assert(points >= 3, kind + ": " + text);
}
if (pictures) {
    view.leave();
    wait(200);
    picture(pictures + "/quick-shapes.png");
}
for (const label in kinds) action("Remove Last Quick Shape");

// A double click on a later point of a line places one, not two and not none.
action("Quick Line Draw");
for (const corner of corners) {
    view.move(corner);
    if (corner === corners[0])
        view.click(corner);
    else
        view.doubleClick(corner);
}
finish();
assertEqual(readFile(directory + "/Line_2.zel").match(/^lla /gm).length, corners.length);
action("Remove Last Quick Shape");

// While drawing, removing the last one only cancels; then the newest goes with its file.
action("Quick Circle Draw");
view.move(here);
view.press(here);
view.move(edge);
action("Remove Last Quick Shape");
view.release(edge);
assertEqual([quickFiles(), shapesInView()], [["Circle_1.zel", "Circle_2.zel"], 0]);
action("Remove Last Quick Shape");
assertEqual([quickFiles(), listFiles(directory)], [["Circle_1.zel"], ["Circle_1.zel"]]);

// One that the user unloads by hand is left alone.
drawCircle();
overlayMenu("Circle_2.zel", "Unload");
action("Remove Last Quick Shape");
assertEqual([quickFiles(), listFiles(directory)], [[], ["Circle_2.zel"]]);
drawCircle();
action("Remove All Quick Shapes");
assertEqual([quickFiles(), listFiles(directory).length], [[], 2]);

// Attached: picked in the view, named in the view, centred on the platform.
const ship = addPlatform({ name: "Ship", lat: 38, lon: 10, alt: 0 });
action("Attach Quick Shape");
assertEqual([checked("Attach Quick Shape"), notes()], [true, []]);
action("Pick Attach Platform");
assert(checked("Pick Attach Platform"));
wait(100);
view.move(38, 10);
view.click(38, 10);
assertEqual(notes(), ["Attach To: Ship", "Click the platform to pick"]);
if (pictures) {
    wait(200);
    picture(pictures + "/attach-note.png");
}
if (pictures) menuPicture("Actions", pictures + "/actions-menu.png");
drawCircle();
assert(!checked("Pick Attach Platform"), "drawing ends picking");
const attached = overlays().find(o => o.path);
assertEqual(attached.platform, ship);
assert(attached.text.includes("centerxyz 0 0 0"), attached.text);
drawKind("Quick Free Draw");
assert(log().some(entry => entry.severity === 3 && entry.text.includes("cannot be attached")), "free drawings say so");
action("Remove Last Quick Shape");
removePlatform(ship);
assertEqual(notes(), []);
action("Attach Quick Shape");
assert(!checked("Attach Quick Shape"));
action("Remove All Quick Shapes");

// The editor and a quick shape: whoever takes the mouse ends what the other draws, and nothing is lost.
action("Quick Circle Draw");
view.move(here);
view.press(here);
view.move({ lat: 42, lon: 6 });
menu("Plug-ins", "Overlay Editor...");
const editor = dialog("Overlay Editor");
editor.moveTo(820, 20);
view.move(edge);
view.release(edge);
finish();
assertEqual(quickFiles().length, 1, "opening the dialog does not end the drawing");
action("Quick Circle Draw");
view.move(here);
view.drag(here, edge);
const before = listFiles(directory).length;
editor.choose("Shape:", "Circle");
assertEqual(listFiles(directory).length, before + 1, "the quick circle is saved");
view.move(here);
view.drag(here, edge);
action("Quick Circle Draw");
waitFor(() => !editor.checked("Edit"), "the dialog to follow");
assertEqual(editor.items().length, 1, "the editor's circle stays");
view.move({ lat: 36, lon: 3 });
view.drag({ lat: 36, lon: 3 }, { lat: 36, lon: 4 });
if (pictures) picture(pictures + "/quick-and-editor.png");

// A cleared scenario takes the shape being drawn and all quick shapes, but no file; what the editor held
// unsaved is in one more.
const filesBefore = listFiles(directory).length;
clearScenario("cleared");
const files = listFiles(directory).length;
assertEqual([quickFiles(), shapesInView(), files], [[], 0, filesBefore + 1]);

// Edited and saved it is the user's: removing takes it out of the view only.
drawCircle();
const edited = quickFiles()[0];
overlayMenu(edited, "Send to Overlay Editor");
editor.select("All Shapes", editor.items()[0]);
editor.fill("Name:", "Mine");
editor.press("Save");
action("Remove Last Quick Shape");
assertEqual(quickFiles(), []);
assert(readFile(directory + "/" + edited).includes("3d name Mine\n"));
editor.press("Delete All");

// The second press at one place counts as a double click: the shape that it begins is drawn all the same.
action("Quick Circle Draw");
const at = view.move(here);
$view.mouse("doubleClick", { x: at.x, y: at.y }, {});
view.move(edge);
view.release(edge);
finish();
assertEqual(quickFiles().length, 1);
action("Remove Last Quick Shape");

// A directory that cannot be made: one message.
editor.close();
answerFileDialog(directory);
action("Set Quick Shape Directory");
setSetting("AutoSaveZelDir", directory + "/" + listFiles(directory)[0]);
const messages = log().length;
drawCircle();
const said = log().slice(messages).filter(entry => entry.text.includes("Failed to create file"));
assertEqual([said.length, shapesInView(), quickFiles()], [1, 0, []]);

// Closed in the middle of a drawing that is complete: it is saved, and stays in the host.
setSetting("AutoSaveZelDir", directory);
action("Quick Circle Draw");
view.move(here);
view.drag(here, edge);
assertEqual(closePlugin("OverlayEditor"), { gone: true, leftBehind: "" });
assertEqual([quickFiles().length, listFiles(directory).length, shapesInView()], [1, files + 2, 0]);
