// What is typed in place of clicks is seen before Enter, also in quick drawing. With a directory as argument it leaves
// pictures there.
menu("Plug-ins", "Overlay Editor...");
const editor = dialog("Overlay Editor"), alone = dialog("Next Point");
const shown = () => overlays().filter(o => !o.path).map(o => o.text);
const points = text => (text.match(/^lla .*/gm) || []).map(line => line.split(" ").slice(1, 3).map(Number));
editor.choose("Shape:", "Line");
editor.fill("Next:", "17 00S 179 54E");
editor.type("Next:", "12 nm 45");
const band = shown().find(text => text.includes("0xff0073ff"));
const end = destination(-17, 179.9, 45, 12 * 1852);
const reached = points(band)[1];
assertNear(distance({ lat: reached[0], lon: reached[1] }, end), 0, 1e-3);
assert(editor.captions().some(caption => caption.startsWith("Point 2: ")), editor.captions().join());
if (args[0]) picture(args[0] + "/next.png");
editor.leave("Next:");
assertEqual(shown().length, 1, "left, it is not taken");
editor.fill("Next:", "12 nm 45");
assertEqual(points(shown()[0])[1], reached);
editor.fill("Next:", "");
assert(editor.checked("Stop"), "finished");
editor.close();

menu("Actions", "Quick Circle Draw");
menu("Actions", "Type Next Overlay Point");
for (const text of ["1 N 1 E", "5 nm", ""]) alone.fill("Next:", text);
assert(!alone.shown, "finished");
const quick = overlays().find(o => o.path).text;
assert(/^centerlla 1 1/m.test(quick) && /^radius 9260$/m.test(quick), quick);
