// A hurried operator: a range ring and a route, exact values in nautical miles and MGRS, on a ship under way; saved,
// the editor restarted, loaded: everything is there, to the last digit that was typed.
const editor = dialog("Overlay Editor");
const picker = dialog("Select Platform");
const work = args[0] || temporaryDirectory();
const file = work + "/hurried.zel";
const shown = name => overlays().filter(o => o.stream && o.text.includes("3d name " + name + "\n"))[0].text;
view.camera = { lat: 21.3, lon: -158, range: 60000 };
const ship = addPlatform({ name: "Ship", lat: 21.3, lon: -158, heading: 270, speed: 15 });
menu("Plug-ins", "Overlay Editor...");
editor.moveTo(820, 0);
editor.choose("Rng:", "nm");
editor.choose("Pos:", "MGRS");

// The ring: drawn with the mouse, then typed.
editor.choose("Shape:", "Circle");
view.drag({ lat: 21.31, lon: -158.01 }, { lat: 21.4, lon: -158.01 });
view.click(21.2, -157.9, { button: "right" });
editor.fill("Name:", "Ring");
editor.fill("GZD:", "4QFJ1234567890");
editor.fill("Radius:", "5.123456789");
assert(shown("Ring").includes("radius 9488.641973228\n"), shown("Ring"));

// The route: clicked, then typed.
editor.choose("Shape:", "Line");
for (const lon of [-158.1, -158.0, -157.9]) view.click(21.2, lon);
view.click(21.2, -157.9, { button: "right" });
editor.fill("Name:", "Route");
while (editor.enabled("<-")) editor.press("<-");
const typed = ["04Q FJ 11111 22222", "04Q FJ 12345 33333", "04Q FJ 99999 00001"];
for (const reference of typed) {
    editor.fill("GZD:", reference);
    editor.press("->");
}
const free = shown("Route").match(/lla .*/g);

// Onto the ship, as offsets in nautical miles, while it is under way.
editor.check("Attach:");
picker.moveTo(60, 60);
picker.select("", "Ship");
picker.press("OK");
assert(editor.checked("Attach:") && editor.captions().includes("Ship"));
while (editor.enabled("<-")) editor.press("<-");
editor.fill("X:", "-2.25");
editor.fill("Y:", "1852 m");
editor.fill("Z:", "328.125 ft");
assert(shown("Route").includes("xyz -4167 1852 100.0"), shown("Route"));
editor.select("All Shapes", "Ring");
editor.fill("X:", "0.5");
editor.fill("Y:", "-1.125");
setTime(time() + 100);
wait(1200);
// What was typed is exactly that, on the way too: 1.125 is a tie.
assertEqual([editor.value("X:"), editor.value("Y:")], ["0.50", "-1.12"]);
answerFileDialog(file);
editor.press("Save As...");
const saved = readFile(file);
assert(/centerxyz 926 -2083\.5 /.test(saved) && saved.includes("radius 9488.641973228\n"), saved);
editor.press("Close");

// Starting again, the ship has gone on. The host still has the file on the ship, or has it no more and is told anew.
const path = plugins()[0].path;
for (const known of [true, false]) {
    assert(closePlugin("OverlayEditor").gone);
    if (!known) overlayMenu("hurried.zel", "Unload");
    assertEqual(overlays().map(o => o.name), known ? ["hurried.zel"] : []);
    assert(openPlugin(path));
    setTime(time() + 500);
    menu("Plug-ins", "Overlay Editor...");
    editor.moveTo(820, 0);
    answerFileDialog(file);
    editor.press("...");
    assertEqual(editor.items(), ["Ring", "Route"]);
    if (!known) {
        assert(editor.checked("ZEL Reference Point"), "the file does not name its ship");
        editor.uncheck("ZEL Reference Point");
        editor.check("Attach:");
        picker.select("", "Ship");
        picker.press("OK");
        setTime(time() + 100);
        wait(1200);
    }
    assert(editor.checked("Ship"), "on the ship");
    editor.select("All Shapes", "Ring");
    editor.choose("Rng:", "nm");
    editor.fill("Prec:", "9");
    assertEqual(["X:", "Y:", "Radius:"].map(field => editor.value(field)), ["0.500000000", "-1.125000000", "5.123456789"]);
    editor.select("All Shapes", "Route");
    assertEqual([editor.value("X:"), editor.value("Y:")], ["-2.250000000", "1.000000000"]);
    editor.press("Save");
    assertEqual(readFile(file), saved, "to the last byte");
    assertEqual(overlay("hurried.zel").platform, ship);
    picture(work + (known ? "/hurried-again.png" : "/hurried-anew.png"));
}
