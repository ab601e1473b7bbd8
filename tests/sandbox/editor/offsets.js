// Files with offsets: they stay what they are, about their own reference or one that is assumed with a warning.
const editor = dialog("Overlay Editor");
const work = args[0] || temporaryDirectory();
menu("Plug-ins", "Overlay Editor...");
editor.moveTo(820, 0);

const leg = reference => "start\nline\naltitudeunits m\nrangeunits m\n" + reference +
    "xyz 0 0 0\nxyz 4000.5 -3000.25 100\n3d name Leg\nend\n" +
    "start\ncircle\naltitudeunits m\nrangeunits m\n" + reference + "centerxyz 2000 1000 0\nradius 1500\n3d name Ring\nend\n";
const load = path => { answerFileDialog(path); editor.press("..."); };
const attachedTo = name => editor.captions().includes(name);
const reference = () => platforms().filter(p => p.name === "ZEL Reference Point");

// With a reference of its own.
writeFile(work + "/own.zel", leg("ref 36.5 -5.25 20\n"));
load(work + "/own.zel");
assertEqual(reference().length, 1);
assertNear(reference()[0].lat, 36.5, 1e-12);
assertNear(reference()[0].lon, -5.25, 1e-12);
assert(attachedTo("ZEL Reference Point"));
assertEqual(log().filter(m => m.severity <= 3), [], "no complaint");
editor.select("All Shapes", "Ring");
editor.press("Center");
assertNear(view.camera.lat, 36.509, 0.001, "the ring stands about the file's reference");
view.camera = { lat: 36.5, lon: -5.25, range: 20000 };
picture(work + "/offsets-own.png");
editor.press("Save");
const own = readFile(work + "/own.zel");
assert(own.includes("ref 36.5 -5.25 20\n") && own.includes("xyz 4000.5 -3000.25 100\n"), own);
assert(!fileExists(work + "/own.zel~"), "nothing is lost");

// The same through the host's own display of it, after the editor has let go of it.
editor.press("Delete All");
assertEqual(reference(), []);
assert(overlay("own.zel").shown, "it stands by itself");
picture(work + "/offsets-host.png");
editor.press("Load HALVIS...");
const existing = dialog("Select Existing ZEL");
existing.select("", 0);
existing.press("OK");
assert(attachedTo("ZEL Reference Point"));
editor.press("Save");
assertEqual(readFile(work + "/own.zel"), own);

// Without one.
view.camera = { lat: 10, lon: 20, range: 50000 };
writeFile(work + "/none.zel", leg(""));
load(work + "/none.zel");
assert(log().some(m => m.severity === 3 && m.text.includes("no reference of its own")), "a warning");
assertNear(reference()[0].lat, 10, 1e-6, "in the middle of the view");
editor.press("Save");
const text = readFile(work + "/none.zel");
assert(!text.includes("ref ") && text.includes("xyz 4000.5 -3000.25 100\n"), text);
picture(work + "/offsets-none.png");

// The user takes the reference away: the shapes stay, absolute.
removePlatform(reference()[0].id);
assert(!editor.checked("Attach:"));
answerFileDialog(work + "/absolute.zel");
editor.press("Save As...");
assert(!readFile(work + "/absolute.zel").includes("xyz"), "absolute now");
