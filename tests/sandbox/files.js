// Platforms and overlays from files: tracks, the clock, the panel's tree, files that change on disk, bad files.
const samples = scriptDirectory + "/../../samples/";
const folder = temporaryDirectory();
const start = 59 * 86400 + 18 * 3600;  // 1 March, 18:00 UTC

assert(openOverlay(samples + "islands.csv"), "the sample scenario opens");
assertEqual(log().filter(entry => entry.severity <= 3), [], "without a message");
assertEqual(platforms().map(platform => platform.name), ["Ferry Kahana", "MV Lanikai", "Flight 62", "Patrol 7"]);
assertEqual(time(), start, "the clock goes to the begin of the tracks");
const named = name => platforms().find(platform => platform.name === name);
const attached = name => overlay(name).platform;
assertEqual(attached("ferry.zel"), named("Ferry Kahana").id);
assertEqual(attached("patrol.zel"), named("Patrol 7").id);

// Half way between two rows of the file.
setTime(start + 70 * 60);
const from = { lat: 21.23, lon: -157.83 }, to = { lat: 21.17, lon: -157.28 };
assertNear(distance(from, named("Ferry Kahana")), distance(from, to) / 2, 0.01, "half the way");
assertNear(distance(named("Ferry Kahana"), to), distance(from, to) / 2, 0.01, "on the geodesic");

// The clock runs as fast as one says, by its button.
view.camera = { lat: 21.3, lon: -157.5, range: 400e3 };
picture(folder + "/before.png");
menu("Scenario", "Run Clock");
const moving = time();
waitFor(() => time() > moving, "the clock runs");
menu("Scenario", "Run Clock");
const stopped = time();
wait(300);
assertEqual(time(), stopped, "it stops");

// The tree hangs overlays under their platforms; its menus work on both.
assert(menuItems("File").some(item => item.text === "Open Recent" && item.enabled));
tickOverlay("ferry.zel", false);
assert(!overlay("ferry.zel").shown);
overlayMenu("ferry.zel", "Show");
assert(overlay("ferry.zel").shown);
overlayMenu("ferry.zel", "Zoom To");
assertNear(distance(view.camera, named("Ferry Kahana")), 0, 2000, "zoomed to the rings");
assert(view.camera.range < 120e3, "as near as they fit");
overlayMenu("ferry.zel", "Show Text");

// Of a file of another program that cannot be read the log has one line, with the reason.
const foreign = folder + "/cut.geojson";
const before = log().length;
writeFile(foreign, '{"type":"FeatureCollection","features":[{"type":');
assert(!openOverlay(foreign));
assertEqual(log().slice(before).map(entry => /^(.*) cannot be opened: (?!the zel command has).+/.exec(entry.text)?.[1]), [foreign]);

// A file that changes on disk is read again, in place: the same overlay, no event of its own.
const circle = radius => "start\ncircle\ncenterll 21 -158\nradius " + radius + "\nend\n";
const live = folder + "/live.zel";
writeFile(live, circle(1000));
assert(openOverlay(live));
writeFile(live, circle(2000));
waitFor(() => overlay("live.zel").text === circle(2000), "the file is read again");
writeFile(live, "start\ncircle\n");
waitFor(() => log().some(entry => entry.text === live + ":1: start without end, the block is lost"), "a message with its line");
assertEqual(overlay("live.zel").text, circle(2000), "what was good stands");
removeFile(live);
waitFor(() => log().some(entry => entry.text === live + " is gone from the disk; it stays as it was read"), "a gone file");
writeFile(live, circle(3000));
assert(openOverlay(live), "it can be opened again");
assertEqual(overlay("live.zel").text, circle(3000));

// A large file that the user opens is read in the pauses, a second one after it.
for (const name of ["/large.zel", "/small.zel"]) {
    writeFile(folder + name, circle(1000) + "# of many lines\n".repeat(name === "/large.zel" ? 300000 : 1));
    answerFileDialog(folder + name);
    menu("File", "Open Overlay...");
}
const opened = () => overlays().map(entry => entry.name).filter(name => name === "large.zel" || name === "small.zel");
waitFor(() => opened().length === 2, "both files");
assertEqual(opened(), ["large.zel", "small.zel"]);
assertEqual(overlay("large.zel").text, readFile(folder + "/large.zel"));

// One file on two platforms, named by a detour: both overlays are read again, and no third one comes.
writeFile(folder + "/ring.zel", circle(1000));
const detour = "../" + folder.split("/").pop() + "/ring.zel";
const pair = lat => `time,name,lat,lon,overlay\n0,A,${lat},2,${detour}\n0,B,${lat},3,${detour}\n`;
writeFile(folder + "/pair.csv", pair(1));
assert(openOverlay(folder + "/pair.csv"));
const rings = () => overlays().filter(entry => entry.name === "ring.zel").map(entry => entry.text);
assertEqual(rings(), [circle(1000), circle(1000)]);
writeFile(folder + "/ring.zel", circle(2000));
waitFor(() => rings().every(text => text === circle(2000)), "both are read again");
writeFile(folder + "/pair.csv", pair(4));
waitFor(() => named("A").lat === 4, "the platforms are moved");
assertEqual(rings().length, 2);

// Bad files: a message with the place, and what is good is shown.
const bad = folder + "/bad.csv";
writeFile(bad, "time,name,lat,lon\n0,Good,1,2\n0,Bad,north,2\n");
assert(openOverlay(bad));
assert(named("Good"));
const said = text => log().some(entry => entry.severity === 2 && entry.text.includes(text));
assert(said(bad + ":3: latitude: expected a number between -90 and 90, found \"north\""));
assert(!openOverlay(folder + "/none.csv") && said("none.csv cannot be opened: it does not exist"));

// The file again, with the same platform elsewhere: what is attached stays attached.
writeFile(bad, "time,name,lat,lon\n0,Good,5,6\n");
waitFor(() => named("Good").lat === 5, "the platform is moved");
clearScenario();
assertEqual(platforms(), []);
assertEqual(attached("ferry.zel"), 0);
