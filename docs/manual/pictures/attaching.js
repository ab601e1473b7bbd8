// Window: 1100x760

// An overlay is attached to a ship, and goes with it; the host's list of overlays, and its menu.
include("lib/manual.js");
lookAt(36, 15.2, 420000);
const ship = addPlatform({ name: "Patrol Ship", lat: 36, lon: 15, heading: 60, speed: 9 });
addPlatform({ name: "Tanker", lat: 35.3, lon: 15.9, heading: 300, speed: 6 });
writeFile(files + "/guard.zel", "start\nellipse\nrangeunits nm\nmajoraxis 40\nminoraxis 25\n3d name Guard zone\n" +
                                "linecolor hex 0xff00d0ff\nlinewidth 3\ncenterll 35.3 15.9\nend\n");
openOverlay(files + "/guard.zel");

openEditor(560, 20);
editor.choose("Shape:", "Circle");
editor.press("Stop");
editor.fill("Name:", "Range ring");
editor.fill("Lat:", "36 10 0 N");
editor.fill("Lon:", "15 20 0 E");
editor.fill("Radius:", "20 nm");
editor.fill("Line Width:", 3);
editor.check("Attach:");
const picker = dialog("Select Platform");
picker.moveTo(40, 330);
view.move(36, 15);
view.click(36, 15);
pictureOfDialog("attach-picker", picker);
picker.press("OK");
answerFileDialog(files + "/range-ring.zel");
editor.press("Save As...");
view.leave();
editor.press("Load HALVIS...");
const existing = dialog("Select Existing ZEL");
existing.select("", 0);
pictureOfDialog("existing", existing);
existing.close();
editor.close();

pictureOfView("attach-before");
movePlatform(ship, { lat: 36.4, lon: 15.8, heading: 60, speed: 9 });
settled();
pictureOfView("attach-after");
