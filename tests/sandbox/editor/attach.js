// Attaching: the list, picking in the view, centred or kept in place, detached, another platform, one that goes.
const editor = dialog("Overlay Editor");
const picker = dialog("Select Platform");
const work = args[0] || temporaryDirectory();
const errors = () => log().filter(m => m.severity <= 3).map(m => m.text);
menu("Plug-ins", "Overlay Editor...");
editor.moveTo(820, 0);
view.camera = { lat: 40, lon: 5, range: 60000 };
const ship = addPlatform({ name: "Ship", lat: 40, lon: 5 });
const plane = addPlatform({ name: "Plane", lat: 40.1, lon: 5.05, alt: 3000 });
const attachedTo = name => editor.checked("Attach:") && editor.captions().includes(name);
const shown = () => overlays().filter(o => o.stream).map(o => o.text).join("");

editor.choose("Shape:", "Circle");
editor.press("Stop");
assert(editor.enabled("Attach:"));
editor.fill("Lat:", "40.05");
editor.fill("Lon:", "5");
editor.fill("Radius:", "3000");

// Opened without a choice.
editor.check("Attach:");
picker.moveTo(60, 60);
assertEqual(picker.items(), ["Plane", "Ship"], "by name");
assert(picker.checked("Pick"), "picking with the mouse at once");
assertEqual(picker.tooltip("OK"), "Attach the current ZEL to the selected platform");
picker.press("OK");
assert(errors().some(text => text.includes("No platform is selected")) && picker.shown);
picture(work + "/attach-picker.png");
picker.close();
assert(!editor.checked("Attach:"), "nothing was chosen");

// Picked in the view; a new platform is found, too.
editor.check("Attach:");
picker.moveTo(60, 420);
const buoy = addPlatform({ name: "Buoy", lat: 39.95, lon: 4.95 });
view.click(39.95, 4.95);
assertEqual(picker.items()[picker.selected()], "Buoy");
view.click(40, 5);
assertEqual(picker.items()[picker.selected()], "Ship");
picture(work + "/attach-picked.png");
picker.press("OK");
assert(attachedTo("Ship"));
assertEqual([editor.value("X:"), Math.round(editor.number("Y:"))], ["0.00", 5552], "kept in place, as an offset");
assert(shown().includes("centerxyz 0 "));
answerFileDialog(work + "/attached.zel");
editor.press("Save As...");
assertEqual(overlay("attached.zel").platform, ship, "with the save the host sees it");

// Another platform, centred.
editor.uncheck("Attach:");
assert(!shown().includes("centerxyz"), "detached at once");
assertNear(editor.number("Alt:#1"), 0, 0);
editor.check("Attach:");
picker.check("Center On Host");
picker.select("", "Plane");
picker.press("OK");
assert(attachedTo("Plane"));
assert(shown().includes("centerxyz 0 0 0\n"), shown());
picture(work + "/attach-centered.png");

// The platform goes: before the choice is confirmed, and while the overlay is on it.
editor.uncheck("Attach:");
editor.check("Attach:");
picker.select("", "Buoy");
removePlatform(buoy);
assertEqual(picker.items(), ["Plane", "Ship"]);
picker.select("", "Plane");
picker.uncheck("Center On Host");
picker.press("OK");
removePlatform(plane);
assert(errors().some(text => text.includes("is gone")) && !editor.checked("Attach:"));
assert(!shown().includes("centerxyz"), "its shapes stay where they are");
clearScenario();
assertEqual(editor.items(), []);
assert(errors().some(text => text.includes("unsaved shapes are kept")), errors());
