// Window: 800x560

// Every kind of shape as it is being edited: drawn with the mouse, the cursor on one of its points.
include("lib/manual.js");
openEditor(0, 0);
menu("View", "Scale Bar");
editor.choose("LLA:", "deg:min NSEW");
editor.choose("Rng:", "km");
editor.fill("Prec:", 1);
const center = { lat: 36, lon: 15 };
const around = (azimuth, km) => destination(center.lat, center.lon, azimuth, km * 1000);
const aside = around(225, 190);

function begin(kind, elevation = 90, range = 520000) {
    lookAt(center.lat, center.lon, range, 0, elevation);
    editor.choose("Shape:", kind);
    editor.color("Line Color:", "FFD000FF");
}
function fill(color = "FFD00060") {
    editor.check("Filled:");
    editor.color("Fill Color:", color);
}
function drag(from, to) {
    view.move(from);
    view.drag(from, to, { steps: 1 });
}
function click(...places) {
    for (const place of places) {
        view.move(place);
        view.click(place);
    }
}
/// Leaves a picture with the cursor on a place, and goes on with an empty editor.
function show(name, cursor) {
    view.move(aside);
    view.move(cursor);
    pictureOfView("tool-" + name);
    editor.press("Delete All");
}

begin("Free Draw");
const wave = Array.from({ length: 28 }, (_, i) => around(270 + i * 6.5, 60 + 50 * Math.cos(i / 3)));
view.move(wave[0]);
view.press(wave[0]);
for (const place of wave) view.move(place);
view.release(wave[wave.length - 1]);
show("free-draw", aside);

begin("Text");
editor.fill("Name:", "Search area");
editor.fill("Font Size:", 18);
click(center);
show("text", center);

begin("Line");
const corners = [around(290, 120), around(340, 70), around(60, 60), around(110, 130)];
click(...corners);
view.click(aside, { button: "right" });
editor.press("Edit");
show("line", corners[2]);

begin("Polygon");
fill();
const area = [around(300, 110), around(30, 90), around(100, 120), around(200, 80)];
click(...area);
view.click(aside, { button: "right" });
editor.press("Edit");
show("polygon", area[1]);

for (const kind of ["Rectangle", "Triangle"]) {
    begin(kind);
    fill();
    const corner = { lat: 36.6, lon: 16.2 };
    drag({ lat: 35.3, lon: 13.8 }, corner);
    show(kind.toLowerCase(), corner);
}

begin("Circle");
fill();
drag(center, around(60, 90));
show("circle", around(60, 90));

begin("Ellipse");
fill();
drag(center, around(90, 130));
drag(aside, around(0, 75));
show("ellipse", around(0, 75));

begin("Arc");
drag(center, around(20, 100));
drag(aside, around(140, 100));
show("arc", around(140, 100));

const tilted = 40;

function drawBody(kind, first, second, height) {
    begin(kind, tilted);
    fill();
    drag(center, first);
    if (second) drag(aside, second);
    editor.fill("Height:", height);
    show(kind.toLowerCase(), first);
}

drawBody("Cylinder", around(90, 110), around(0, 80), "60 km");
drawBody("Wedge", around(30, 110), around(140, 110), "60 km");

for (const kind of ["Sphere", "Hemisphere"]) {
    begin(kind, tilted);
    fill();
    drag(center, around(100, 80));
    show(kind.toLowerCase(), around(100, 80));
}

drawBody("Ellipsoid", around(90, 120), around(0, 80), "50 km");
drawBody("Cone", around(100, 80), null, "90 km");

begin("Orbit");
fill();
drag(around(270, 70), around(80, 70));
drag(aside, around(0, 50));
show("orbit", around(80, 70));
