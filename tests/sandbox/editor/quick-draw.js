// Quick drawing where the host's mouse, lists and menus count: double clicks, a platform picked in the view, files that
// the user unloads, the editor beside it.
const directory = temporaryDirectory() + "/shapes";
const here = { lat: 42, lon: 5 };
const edge = { lat: 42, lon: 7 };
view.camera = { lat: 40, lon: 6, alt: 0, range: 4000000, azimuth: 0, elevation: 90 };

const action = label => menu("Actions", label);
const quickFiles = () => overlays().filter(o => o.path).map(o => o.name);
function finish() { view.click({ lat: 30, lon: 0 }, { button: "right" }); }
function beginCircle() {
    action("Quick Circle Draw");
    view.move(here);
    view.drag(here, edge);
}
assert(menuItems("Actions").length >= 20, "nineteen quick commands and the dialog's");
makeDirectory(directory);
answerFileDialog(directory);
action("Set Quick Shape Directory");

// A double click on a later point places one, not two and not none.
action("Quick Line Draw");
for (const [i, corner] of [{ lat: 40, lon: 3 }, here, { lat: 40, lon: 8 }].entries()) {
    view.move(corner);
    i ? view.doubleClick(corner) : view.click(corner);
}
finish();
assertEqual(readFile(directory + "/Line_1.zel").match(/^lla /gm).length, 3);
action("Remove Last Quick Shape");

// The second press at one place counts as a double click: the shape that it begins is drawn all the same. One that
// the user unloads by hand is left alone.
action("Quick Circle Draw");
const at = view.move(here);
$view.mouse("doubleClick", { x: at.x, y: at.y }, {});
view.move(edge);
view.release(edge);
finish();
overlayMenu("Circle_1.zel", "Unload");
action("Remove Last Quick Shape");
assertEqual([quickFiles(), listFiles(directory)], [[], ["Circle_1.zel"]]);

// Attached: picked in the view, named in the view, centred on the platform.
const ship = addPlatform({ name: "Ship", lat: 38, lon: 10, alt: 0 });
action("Attach Quick Shape");
action("Pick Attach Platform");
wait(100);
view.move(38, 10);
view.click(38, 10);
assertEqual(screenTexts().map(note => note.text).sort(), ["Attach To: Ship", "Click the platform to pick"]);
beginCircle();
finish();
const attached = overlays().find(o => o.path);
assert(attached.platform === ship && attached.text.includes("centerxyz 0 0 0"), attached.text);
removePlatform(ship);
action("Attach Quick Shape");

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
editor.press("Delete All");
