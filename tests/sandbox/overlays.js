// Overlay files and texts: loading, showing, listing, attaching, observing, the panel and its menu.
include("lib/probe.js");
open();
const work = temporaryDirectory();
const circle = `${work}/circle.zel`;
const text = "version 2\nstart\ncircle\ncenterll 10 20\nradius 50\nrangeunits km\nlinecolor red\nfilled true\nfillcolor red\nend\n";
writeFile(circle, text);
writeFile(`${work}/empty.zel`, "# nothing\n");
writeFile(`${work}/bad.zel`, "start\nnonsense 1\ncircle\ncenterll 1 2\nradius 5\nend\n");

// The observer is told of files, from inside the calls.
command("observe");
said();
assertEqual(command(`load one ${circle} 0 1`), "loaded");
assertEqual(said(), ["overlay added"]);
assertEqual(overlay("circle.zel").text, text);
assertEqual(command("text-of one"), "version 2");
assertEqual(command("file-name one"), circle);
assertEqual(command(`find ${work}/../${work.split("/").pop()}/circle.zel`), "one");
assertEqual(command("find nowhere.zel"), "none");
assertEqual(command("unattached"), "1");
view.camera = { lat: 10, lon: 20, range: 4e5 };
assertEqual(view.colorAt(view.size.width / 2, view.size.height / 2) & 0xff0000, 0xff0000, "drawn");
assert((view.colorAt(5, 5) & 0xff0000) !== 0xff0000, "and not everywhere");
command("show-overlay one 0");
assert(!overlay("circle.zel").shown);
assert((view.colorAt(view.size.width / 2, view.size.height / 2) & 0xff0000) !== 0xff0000, "hidden");

// Failures are told in the log.
said();
const lines = () => log().map(entry => entry.text);
assertEqual(command(`load two ${work}/missing.zel 0 1`), "not loaded");
assert(lines().some(line => line.includes("missing.zel cannot be opened: it does not exist")));
assertEqual(command(`load two ${work} 0 1`), "not loaded");
assertEqual(command(`load two ${work}/empty.zel 0 1`), "not loaded");
assert(lines().some(line => line.includes("empty.zel holds no shape")));
assertEqual(command(`load two ${work}/bad.zel 0 0`), "loaded");
assert(lines().some(line => line.includes("bad.zel:2: ") && line.includes("nonsense")), "the parser's message");
assertEqual(overlay("bad.zel").shown, false);

// The panel shows and hides, and its menu takes the plug-ins' items by their position.
command("menus");
tickOverlay("circle.zel", true);
assert(overlay("circle.zel").shown);
said();
overlayMenu(["circle.zel", "bad.zel"], "Probe It");
assertEqual(said(), ["menu of ZelList with 2 overlays", "probed"]);
assertThrows(() => overlayMenu("circle.zel", "Not Now"), /disabled/);
overlayMenu("bad.zel", "Show");
assert(overlay("bad.zel").shown);
command("no-menus");
said();
overlayMenu("bad.zel", "Unload");
assertEqual(said(), ["overlay removed"]);
assert(!overlay("bad.zel"));
assertEqual(misuses(() => command("file-name two")).length, 1, "the handle is dead");

// Attached overlays are listed with their platform, and outlive it.
const ship = addPlatform({ name: "Ship", lat: 10, lon: 20 });
command("unload one");
assertEqual(command(`load one ${circle} ${ship} 1`), "loaded");
assertEqual(command("host-of one"), String(ship));
assertEqual([command("unattached"), command("attached " + ship), command("attached 0")], ["0", "1", "0"]);
removePlatform(ship);
assertEqual(command("host-of one"), "0");
assertEqual(command("unattached"), "1");

// A text is shown, but in no list, and no observer hears of it.
said();
assertEqual(command("stream band 12 13"), "loaded");
assertEqual(said(), []);
assertEqual(command("unattached"), "1");
assert(command("text-of band").startsWith("start"));
assertEqual(command("file-name band"), "");
command("unload band");

// Opening a file again by hand reads it again, in place.
answerFileDialog(circle);
menu("File", "Open Overlay...");
assertEqual(said(), []);
assertEqual(overlays().length, 1);
command("unobserve");

// A line between two platforms.
const a = addPlatform({ name: "A", lat: 9.5, lon: 20 });
const b = addPlatform({ name: "B", lat: 10.5, lon: 20 });
assertEqual(ask(411, "i0", "i" + a, "i" + b, "i4278190335", ">line").pointers, ["line"]);
movePlatform(b, { lat: 11 });
ask(411, "i1", "pline");
