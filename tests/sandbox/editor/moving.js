// An overlay on a platform that moves: the edit points stay on what the host draws.
const editor = dialog("Overlay Editor");
const work = args[0] || temporaryDirectory();
menu("Plug-ins", "Overlay Editor...");
editor.moveTo(820, 0);
view.camera = { lat: 40, lon: 5, range: 60000 };
const ship = addPlatform({ name: "Ship", lat: 40, lon: 5 });

const attach = () => {
    editor.check("Attach:");
    const picker = dialog("Select Platform");
    picker.select("", "Ship");
    picker.press("OK");
};
const load = path => { answerFileDialog(path); editor.press("..."); };
/// Whether an edit point (yellow, on top of everything) is drawn there.
const pointAt = (lat, lon) => {
    const at = view.pixel(lat, lon);
    const pixel = view.colorAt(Math.round(at.x), Math.round(at.y)) & 0xffffff;
    return (pixel >> 16) > 0xc0 && ((pixel >> 8) & 0xff) > 0xc0 && (pixel & 0xff) < 0x60;
};

writeFile(work + "/ship.zel", "start\nline\naltitudeunits m\nlla 40.05 4.9 0\nlla 40.05 5.1 0\nlla 40.12 5 0\n" +
    "3d name Route\nend\nstart\ncircle\naltitudeunits m\nrangeunits m\ncenterlla 40 5 0\nradius 4000\n3d name Ring\nend\n");
load(work + "/ship.zel");
editor.select("All Shapes", "Route");
attach();
editor.press("Save");
const saved = readFile(work + "/ship.zel");
editor.press("Edit");
assert(pointAt(40.05, 4.9) && pointAt(40.05, 5.1), "the edit points");
picture(work + "/moving-before.png");
const x = editor.value("X:");
const streams = () => overlays().filter(o => o.stream).map(o => o.text);
const shown = streams();

// Along the meridian an offset keeps its longitude, within what the parallels narrow.
movePlatform(ship, { lat: 40.06, lon: 5 });
waitFor(() => pointAt(40.11, 4.8999), "the edit points follow", 3000);
picture(work + "/moving-after.png");
assertEqual(editor.value("X:"), x);
assertEqual(streams(), shown, "nothing was loaded anew");

editor.press("Stop");

// With a speed of its own, while the clock runs; saving again writes the same bytes.
movePlatform(ship, { lat: 40, lon: 5, heading: 90, speed: 400 });
editor.select("All Shapes", "Ring");
editor.press("Edit");
setTime(10);
const there = platforms()[0];
assert(there.lon > 5.03, "it moves");
waitFor(() => pointAt(there.lat, there.lon), "the ring's centre is the ship", 3000);
picture(work + "/moving-ring.png");
assertEqual([editor.value("X:"), editor.value("Y:")], ["0.00", "0.00"]);
editor.press("Save");
assertEqual(readFile(work + "/ship.zel"), saved);

// Detached, the shapes stay where they are then.
editor.uncheck("Attach:");
assertNear(Number(/centerlla (\S+) (\S+)/.exec(overlays().filter(o => o.stream && o.text.includes("Ring"))[0].text)[2]),
    there.lon, 1e-9);
