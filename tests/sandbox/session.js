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

openOverlay(samples + "islands.csv");
setTime(time() + 4000);
addPlatform({ name: "Buoy, \"east\"", lat: 20.5, lon: -156.25, heading: 30 });
openOverlay(ring);
overlayMenu("ring.zel", "Attach To", "MV Lanikai");
assertEqual(overlay("ring.zel").platform, platform("MV Lanikai").id, "attached by the menu");
openOverlay(samples + "gallery.zel");
overlayMenu("patrol.zel", "Unload");
tickOverlay("ferry.zel", false);
view.camera = { lat: 20.9, lon: -157.1, range: 81000, azimuth: 30, elevation: 50 };
const before = state();
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
