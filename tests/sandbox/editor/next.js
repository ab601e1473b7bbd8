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
// A route of eight legs, across 180 degrees, and six references pasted behind it.
let at = { lat: -17, lon: 179.9 };
for (const [miles, bearing] of [[12, 45], [80, 90], [3.5, 181.25], [250, 300], [0.1, 7], [60, 270], [33, 359], [500, 123]]) {
    editor.fill("Next:", miles + " nm " + bearing);
    at = destination(at.lat, at.lon, bearing, miles * 1852);
    const [lat, lon] = points(shown()[0]).pop();
    assertNear(distance({ lat, lon }, at), 0, 1e-3);
}
assertEqual(points(shown()[0])[1], reached);
for (const reference of ["4QFJ1234567890", "31UDQ4825111932", "32UPU9126334230", "37UDB1327980146", "18TWL8395907350", "56HLH3436850948"])
    editor.fill("Next:", reference);
assertEqual(points(shown()[0]).length, 15);
editor.fill("Next:", "");
assert(editor.checked("Stop"), "finished");
editor.close();

menu("Actions", "Quick Circle Draw");
menu("Actions", "Type Next Overlay Point");
for (const text of ["1 N 1 E", "5 nm", ""]) alone.fill("Next:", text);
assert(!alone.shown, "finished");
const quick = overlays().find(o => o.path).text;
assert(/^centerlla 1 1/m.test(quick) && /^radius 9260$/m.test(quick), quick);
