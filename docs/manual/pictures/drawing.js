// Window: 1100x760

// What the hand has besides the mouse: lines that are typed, rings, and a whole shape that is turned.
include("lib/manual.js");
openEditor(285, 30);
lookAt(36, 15, 300000);
editor.choose("LLA:", "deg:min NSEW");
editor.choose("Rng:", "nm");
editor.fill("Prec:", 1);
editor.choose("Shape:", "Line");
editor.color("Line Color:", "FFD000FF");
for (const line of ["36 20N 14 10E", "22 nm 110", "15 nm 200"]) editor.fill("Next:", line);
editor.type("Next:", "25 nm 80");
// Without its left column the dialog leaves the line free.
pressKey("F9");
editor.moveTo(612, 30);
pictureOfWindow("next-row");
pressKey("F9");
editor.moveTo(285, 30);
editor.press("Delete All");

editor.choose("Shape:", "Circle");
editor.color("Line Color:", "FFD000FF");
for (const line of ["36N 14 20E", "5 nm"]) editor.fill("Next:", line);
editor.press("Stop");
editor.press("Rings...");
const rings = dialog("Rings");
rings.moveTo(60, 480);
rings.fill("First:", "10 nm");
rings.fill("Step:", "10 nm");
rings.fill("Count:", 4);
pictureOfDialog("rings-dialog", rings);
rings.press("OK");
view.leave();
pictureOfView("rings");
editor.press("Delete All");

lookAt(36, 15, 300000);
editor.choose("Shape:", "Polygon");
editor.color("Line Color:", "FFD000FF");
for (const line of ["36 30N 14 40E", "36 30N 15 20E", "36N 15 40E", "35 40N 15E", "36N 14 30E", ""]) editor.fill("Next:", line);
editor.press("Edit");
// The handle names itself.
const hint = () => screenTexts().map(note => note.text).join();
let held;
for (let lat = 35.95; lat < 36.25 && !held; lat += 0.03)
    for (let lon = 14.9; lon < 15.15 && !held; lon += 0.04) {
        view.move(lat, lon);
        if (hint().includes("whole shape")) held = { lat, lon };
    }
const rim = degrees => destination(held.lat, held.lon, degrees, 30000);
view.press(held, { modifiers: "control" });
view.move(rim(90), { modifiers: "control+shift" });
view.move(rim(120), { modifiers: "control+shift" });
pictureOfView("tool-whole");
view.release(rim(120), { modifiers: "control+shift" });
