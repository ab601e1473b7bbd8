// Window: 1160x930

// The steps of the quick start, with the numbers that it names.
include("lib/manual.js");
showOnMap("Coastlines");
lookAt(35.9, 15.9, 640000);
const ship = addPlatform({ name: "Patrol Ship", lat: 36, lon: 15, heading: 70, speed: 10 });

openEditor(672, 30);

// The ring.
editor.choose("Shape:", "Circle");
view.move(36, 15);
view.press(36, 15);
view.move(36.3, 15.7);
pictureOfView("quick-drag");
view.release(36.3, 15.7);
view.click(34.2, 13.5, { button: "right" });
editor.fill("Name:", "Range ring");
editor.fill("Lat:", "36 0 0 N");
editor.fill("Lon:", "15 0 0 E");
editor.fill("Radius:", "25 nm");
editor.choose("Rng:", "nm");
pictureOfDialog("quick-ring-panel");

// The route.
editor.choose("Shape:", "Line");
for (const [lat, lon] of [[35.9, 14.6], [35.3, 15.2], [35.4, 16.6], [36.2, 17.2]]) {
    view.move(lat, lon);
    view.click(lat, lon);
}
view.click(34.2, 13.5, { button: "right" });
editor.fill("Name:", "Route");
editor.fill("Line Width:", 3);
editor.color("Line Color:", "FFD000FF");
while (editor.enabled("<-")) editor.press("<-");
for (const [lat, lon] of [["35 54 0 N", "14 36 0 E"], ["35 18 0 N", "15 12 0 E"], ["35 24 0 N", "16 36 0 E"], ["36 12 0 N", "17 12 0 E"]]) {
    editor.fill("Lat:", lat);
    editor.fill("Lon:", lon);
    editor.press("->");
}

// The label.
editor.choose("Shape:", "Text");
view.move(35, 15.5);
view.click(35, 15.5);
view.click(34.2, 13.5, { button: "right" });
editor.fill("Name:", "Search area");
editor.fill("Lat:", "35 0 0 N");
editor.fill("Lon:", "15 30 0 E");
editor.fill("Font Size:", 18);
editor.color("Line Color:", "FFFFFFFF");
view.leave();
savedMark("Not saved");
pictureOfWindow("quick-drawn");

// To the ship, and saved.
editor.check("Attach:");
const picker = dialog("Select Platform");
picker.moveTo(120, 120);
picker.select("", "Patrol Ship");
pictureOfDialog("quick-attach", picker);
picker.press("OK");
answerFileDialog(files + "/patrol.zel");
editor.press("Save As...");
lookAt(35.9, 15.9, 640000);
movePlatform(ship, { lat: 36.5, lon: 15.9, heading: 45, speed: 0 });
editor.close();
pictureOfView("quick-moved");

lookAt(36.6, 14.6, 1500000);
pictureOfView("cover");
