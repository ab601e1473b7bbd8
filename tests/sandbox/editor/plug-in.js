// What the host shows of the plug-in: who it is, its menu item, its part of the overlays' context menu, its help.
const work = args[0] || temporaryDirectory();
const [self] = plugins();
assertEqual([self.name, self.description, self.author],
            ["OverlayEditor", "Overlay Editor Plug-in lets you create and edit shapes in 3-D in HALVIS.",
             "the OverlayEditor authors"]);
assert(/^\d+\.\d+\.\d+ \(20\d\d-\d\d-\d\d\)$/.test(self.version), self.version);
const [item] = menuItems("Plug-ins").filter(entry => entry.text === "Overlay Editor...");
assert(item.icon, "the menu item's picture");
if (args[0]) menuPicture("Plug-ins", work + "/plug-ins-menu.png");

// Sent from the host's list, one and several: each is edited in turn, and the host draws it no more meanwhile.
const circle = name => "start\n3d name " + name + "\ncircle\ncenterll 42 5\nradius 90\nrangeunits km\nend\n";
for (const name of ["A", "B"]) {
    writeFile(work + "/" + name + ".zel", circle(name));
    assert(openOverlay(work + "/" + name + ".zel"));
}
overlayMenu("A.zel", "Send to Overlay Editor");
const editor = dialog("Overlay Editor");
editor.moveTo(820, 20);
assertEqual([editor.items(), editor.value("File:")], [["A"], work + "/A.zel"]);
assertEqual(["A.zel", "B.zel"].map(name => overlay(name).shown), [false, true]);
overlayMenu(["A.zel", "B.zel"], "Send to Overlay Editor");
assertEqual(editor.items(), ["B"]);
assertEqual(["A.zel", "B.zel"].map(name => overlay(name).shown), [true, false]);
if (args[0]) picture(work + "/sent.png");

// Closed by the window manager it is only hidden.
editor.close();
assertEqual([overlay("B.zel").shown, dialogs()], [true, []]);
menu("Plug-ins", "Overlay Editor...");
assertEqual(editor.items(), ["B"]);

// At its end what is not saved is in a dated file, which the log names, and nothing else is left.
setSetting("AutoSaveZelDir", work + "/kept");
editor.select("All Shapes", "B");
editor.fill("Radius:", "1234.5");
assertEqual(closePlugin("OverlayEditor"), { gone: true, leftBehind: "" });
const [kept] = listFiles(work + "/kept");
assert(/^Unsaved \d{4}-\d\d-\d\d \d\d-\d\d-\d\d\.zel$/.test(kept), kept);
assert(log().some(entry => entry.text.includes(`unsaved shapes are kept in ${work}/kept/${kept}`)));
assert(readFile(work + "/kept/" + kept).includes("\nradius 1234.5\n"));
assertEqual(overlays().map(entry => [entry.name, entry.shown]), [["A.zel", true], ["B.zel", true]]);
