// What was open is open again: platforms, overlays on their platforms, the clock, the camera.
const samples = scriptDirectory + "/../../samples/";
const folder = temporaryDirectory();
const ring = folder + "/ring.zel";
writeFile(ring, "start\ncircle\naltitudeunits m\nrangeunits m\ncenterxyz 0 0 0\nradius 4000\n3d follow 1\nend\n");
const platform = name => platforms().find(p => p.name === name);
/// Everything of a session but the ids, which are others each time.
const nameOf = id => { const found = platforms().find(p => p.id === id); return found ? found.name : ""; };
const state = () => ({
    platforms: platforms().map(p => [p.name, p.lat.toFixed(9), p.lon.toFixed(9)]),
    overlays: overlays().map(o => [o.path, o.shown, nameOf(o.platform)]),
    time: time(),
    camera: JSON.stringify(view.camera)
});

include("lib/probe.js");
open();
openOverlay(samples + "ferry.zel");
openOverlay(samples + "islands.csv");
assertEqual(overlays().map(o => nameOf(o.platform)).sort(), ["Ferry Kahana", "Patrol 7"], "what waited for its platform is on it");
setTime(time() + 4000);
addPlatform({ name: "Buoy, \"east\"", lat: 20.5, lon: -156.25, heading: 30 });
openOverlay(ring);
overlayMenu("ring.zel", "Attach To", "MV Lanikai");
assertEqual(overlay("ring.zel").platform, platform("MV Lanikai").id, "attached by the menu");
command(`load one ${samples}gallery.zel 0 1`);
command(`load two ${samples}keywords.zel 0 0`);
overlayMenu("patrol.zel", "Unload");
tickOverlay("ferry.zel", false);
view.camera = { lat: 20.9, lon: -157.1, range: 81000, azimuth: 30, elevation: 50 };
const before = state();
// What a plug-in hides, as it shows it itself while it edits it, is shown again.
command("show-overlay one 0");
before.overlays.find(row => row[0].endsWith("keywords.zel"))[1] = true;
keepSession();

menu("File", "Close All");
assertEqual([platforms(), overlays()], [[], []], "all is closed");
view.camera = { lat: 0, lon: 0, range: 1e6 };
restoreSession();
assertEqual(state(), before);
assertEqual(log().filter(entry => entry.severity <= 2), [], "without an error");
// The ring is about its ship, where she is now.
setTime(time() + 600);
assertEqual(nameOf(overlay("ring.zel").platform), "MV Lanikai");

// A file that is gone is named, and the others are there.
menu("File", "Close All");
removeFile(ring);
restoreSession();
assert(log().some(entry => entry.severity === 2 && entry.text.includes(ring)), "named in the log");
assertEqual(overlays().length, before.overlays.length - 1);

// A click on a shape selects it in the panel, where nothing lies over it; one beside it nothing.
menu("File", "Close All");
writeFile(ring, "start\n3d name Area\ncircle\ncenterll 10 20\nradius 30000\nrangeunits m\nfilled\nend\n" +
          "start\n3d name Road\nline\nll 10 19.9\nll 10 20.1\nend\n");
assert(openOverlay(ring));
view.camera = { lat: 10, lon: 20, range: 2e5 };
const picked = (lat, lon) => { view.click({ lat, lon }); return selectedShape(); };
assertEqual([picked(10.1, 20), picked(10, 20.05), picked(10.4, 20), picked(9.9, 20)].map(text => text.replace(/ \(.*/, "")),
            ["ring.zel: Area", "ring.zel: Road", "", "ring.zel: Area"]);

// Every item of every menu has a letter of its own.
for (const name of ["File", "Scenario", "Plug-ins", "Actions", "View"]) {
    const letters = menuItems(name).map(item => item.letter);
    assertEqual([letters.length - new Set(letters).size, letters.includes("")], [0, false], name + ": " + letters);
}
