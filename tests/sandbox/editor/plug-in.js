// What the host shows of the plug-in: its menu item, its part of the overlays' context menu.
const work = temporaryDirectory();
assert(menuItems("Plug-ins").find(entry => entry.text === "Overlay Editor...").icon, "the menu item's picture");

// Sent from the host's list, several: each is edited in turn, and the host draws it no more meanwhile.
for (const name of ["A", "B"]) {
    writeFile(work + "/" + name + ".zel", "start\n3d name " + name + "\ncircle\ncenterll 42 5\nradius 90\nrangeunits m\nend\n");
    assert(openOverlay(work + "/" + name + ".zel"));
}
overlayMenu(["A.zel", "B.zel"], "Send to Overlay Editor");
const editor = dialog("Overlay Editor");
editor.moveTo(820, 20);
assertEqual([editor.items(), editor.value("File:")], [["B"], work + "/B.zel"]);
assertEqual(["A.zel", "B.zel"].map(name => overlay(name).shown), [true, false]);

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
