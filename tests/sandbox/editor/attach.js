// Attaching with real platforms: picked in the view, kept in place or centred, saved, and a platform that goes.
const editor = dialog("Overlay Editor");
const picker = dialog("Select Platform");
const work = args[0] || temporaryDirectory();
menu("Plug-ins", "Overlay Editor...");
editor.moveTo(820, 0);
view.camera = { lat: 40, lon: 5, range: 60000 };
const ship = addPlatform({ name: "Ship", lat: 40, lon: 5 });
const plane = addPlatform({ name: "Plane", lat: 40.1, lon: 5.05, alt: 3000 });
const shown = () => overlays().filter(o => o.stream).map(o => o.text).join("");

editor.choose("Shape:", "Circle");
editor.press("Stop");
editor.fill("Lat:", "40.05");
editor.fill("Lon:", "5");
editor.fill("Radius:", "3000");
editor.check("Attach:");
picker.moveTo(60, 420);
assertEqual([picker.items(), picker.checked("Pick")], [["Plane", "Ship"], true], "by name, and picking at once");
picture(work + "/attach-picker.png");
for (const [lat, lon, name] of [[39.95, 4.95, "Buoy"], [40, 5, "Ship"]]) {
    if (name === "Buoy") addPlatform({ name, lat, lon });
    view.click(lat, lon);
    assertEqual(picker.items()[picker.selected()], name);
}
picker.press("OK");
assert(editor.checked("Attach:") && editor.captions().includes("Ship"));
assertEqual([editor.value("X:"), Math.round(editor.number("Y:"))], ["0.00", 5552], "kept in place, as an offset");
assert(shown().includes("centerxyz 0 "));
answerFileDialog(work + "/attached.zel");
editor.press("Save As...");
assertEqual(overlay("attached.zel").platform, ship, "with the save the host sees it");

// Another platform, centred; it goes, and the shape stays where it was.
editor.uncheck("Attach:");
assert(!shown().includes("centerxyz"), "detached at once");
editor.check("Attach:");
picker.check("Center On Host");
picker.select("", "Plane");
picker.press("OK");
assert(shown().includes("centerxyz 0 0 0\n"), shown());
removePlatform(plane);
assert(log().some(entry => entry.text.includes("is gone")) && !editor.checked("Attach:"));
assert(/centerlla 40\.1 5\.05 /.test(shown()), shown());
clearScenario();
assertEqual(editor.items(), []);
assert(log().some(entry => entry.text.includes("unsaved shapes are kept")));
