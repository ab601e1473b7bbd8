// Quick drawing with the real mouse and menus: a shape of each kind, colours, double clicks, a platform, the editor.
const pictures = args[0];
const directory = temporaryDirectory() + "/shapes";
const here = { lat: 42, lon: 5 };
const edge = { lat: 42, lon: 7 };
view.camera = { lat: 40, lon: 6, alt: 0, range: 4000000, azimuth: 0, elevation: 90 };

const action = label => menu("Actions", label);
const checked = label => menuItems("Actions").find(item => item.text === label).checked;
const quickFiles = () => overlays().filter(o => o.path).map(o => o.name);
const shapesInView = () => overlays().filter(o => !o.path).length;
function finish() { view.click({ lat: 30, lon: 0 }, { button: "right" }); }
function beginCircle() {
    action("Quick Circle Draw");
    view.move(here);
    view.drag(here, edge);
}

assertEqual(menuItems("Actions").length, 20, "nineteen quick commands and the dialog's");
makeDirectory(directory);
answerFileDialog(directory);
action("Set Quick Shape Directory");
assertEqual(setting("AutoSaveZelDir"), directory);

// A circle is a file as soon as the right button is pressed; a colour is checked and holds for all that follow.
beginCircle();
action("Yellow Shape Color");
assertEqual(["Red", "Yellow"].map(name => checked(name + " Shape Color")), [false, true]);
finish();
assertEqual([quickFiles(), shapesInView()], [["Circle_1.zel"], 0]);
assert(/3d name Circle 1\n/.test(readFile(directory + "/Circle_1.zel")));
const corners = [{ lat: 40, lon: 3 }, { lat: 42, lon: 5 }, { lat: 40, lon: 8 }];
for (const [label, kind, clicked] of [["Line", "Line", true], ["Poly", "Polygon", true], ["Free", "Free Draw"],
                                      ["Rectangle", "Rectangle"], ["Triangle", "Triangle"]]) {
    action("Quick " + label + " Draw");
    view.move(corners[0]);
    // A double click on a later point places one, not two and not none.
    if (clicked)
        for (const corner of corners) view.move(corner), corner === corners[0] ? view.click(corner) : view.doubleClick(corner);
    else
        view.drag(corners[0], corners[1], { steps: 10 });
    finish();
    const text = readFile(directory + "/" + kind + "_1.zel");
    assert(text.includes("3d name " + kind + " 1\n") && text.includes("ff00ffff"), text);
    const points = text.match(/^lla /gm).length;
    assert(clicked || kind === "Triangle" ? points === 3 : points > 3, kind + ": " + text);
}
if (pictures) picture(pictures + "/quick-shapes.png");
for (let i = 0; i < 5; ++i) action("Remove Last Quick Shape");
assertEqual([quickFiles(), listFiles(directory)], [["Circle_1.zel"], ["Circle_1.zel"]]);

// The second press at one place counts as a double click: the shape that it begins is drawn all the same. One that
// the user unloads by hand is left alone.
action("Quick Circle Draw");
const at = view.move(here);
$view.mouse("doubleClick", { x: at.x, y: at.y }, {});
view.move(edge);
view.release(edge);
finish();
overlayMenu("Circle_2.zel", "Unload");
action("Remove Last Quick Shape");
assertEqual([quickFiles(), listFiles(directory)], [[], ["Circle_2.zel"]]);

// Attached: picked in the view, named in the view, centred on the platform.
const ship = addPlatform({ name: "Ship", lat: 38, lon: 10, alt: 0 });
action("Attach Quick Shape");
action("Pick Attach Platform");
wait(100);
view.move(38, 10);
view.click(38, 10);
assertEqual(screenTexts().map(note => note.text).sort(), ["Attach To: Ship", "Click the platform to pick"]);
if (pictures) menuPicture("Actions", pictures + "/actions-menu.png");
beginCircle();
finish();
assert(!checked("Pick Attach Platform"), "drawing ends picking");
const attached = overlays().find(o => o.path);
assertEqual(attached.platform, ship);
assert(attached.text.includes("centerxyz 0 0 0"), attached.text);
removePlatform(ship);
assertEqual(screenTexts(), []);
action("Attach Quick Shape");
action("Remove All Quick Shapes");

// The editor and a quick shape: whoever takes the mouse ends what the other draws, and nothing is lost.
menu("Plug-ins", "Overlay Editor...");
const editor = dialog("Overlay Editor");
editor.moveTo(820, 20);
beginCircle();
const before = listFiles(directory).length;
editor.choose("Shape:", "Circle");
assertEqual(listFiles(directory).length, before + 1, "the quick circle is saved");
view.move(here);
view.drag(here, edge);
action("Quick Circle Draw");
waitFor(() => !editor.checked("Edit"), "the dialog to follow");
assertEqual(editor.items().length, 1, "the editor's circle stays");

// A cleared scenario takes what is being drawn and all quick shapes, but no file; what the editor held is in one more.
clearScenario("cleared");
assertEqual([quickFiles(), shapesInView(), listFiles(directory).length], [[], 0, before + 2]);

// Edited and saved it is the user's: removing takes it out of the view only.
beginCircle();
finish();
const edited = quickFiles()[0];
overlayMenu(edited, "Send to Overlay Editor");
editor.select("All Shapes", 0);
editor.fill("Name:", "Mine");
editor.press("Save");
action("Remove Last Quick Shape");
assertEqual(quickFiles(), []);
assert(readFile(directory + "/" + edited).includes("3d name Mine\n"));

// Closed in the middle of a drawing that is complete: it is saved, and stays in the host.
beginCircle();
assertEqual(closePlugin("OverlayEditor"), { gone: true, leftBehind: "" });
assertEqual([quickFiles().length, listFiles(directory).length, shapesInView()], [1, before + 4, 0]);
