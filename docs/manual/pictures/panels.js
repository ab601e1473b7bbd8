// Window: 640x480

// The panel of every kind, and the dialog as a whole.
include("lib/manual.js");
openEditor(700, 30);
lookAt(36, 15, 520000);
function panel(name) {
    view.leave();
    settled();
    editor.picture(picturePath("panel-" + name), "Shape Controls");
}
function fields(values) {
    for (const name in values) editor.fill(name, values[name]);
}
const center = { "Lat:": "36 0 0 N", "Lon:": "15 0 0 E" };
function add(kind, values, place = {}) {
    editor.choose("Shape:", kind);
    editor.press("Stop");
    fields(place);
    fields(values);
}

add("Circle", { "Radius:": "25 nm" }, center);
savedMark("Not saved");
editor.picture(picturePath("dialog"));
for (const group of ["All Shapes", "General Options", "Units"])
    editor.picture(picturePath("group-" + group.toLowerCase().replace(" ", "-")), group);
panel("circle");
editor.choose("Pos:", "MGRS");
panel("mgrs");
editor.choose("Pos:", "LLA");

add("Ellipse", { "X Radius:": "60 km", "Y Radius:": "35 km" }, center);
panel("ellipse");
add("Arc", { "X Radius:": "60 km", "Y Radius:": "60 km", "Start Angle:": 20, "End Angle:": 140 }, center);
panel("arc");
add("Cylinder", { "X Radius:": "60 km", "Y Radius:": "35 km", "Height:": "10 km" }, center);
panel("cylinder");
add("Wedge", { "X Radius:": "60 km", "Y Radius:": "60 km", "Height:": "10 km", "Start Angle:": 20,
               "End Angle:": 140 }, center);
panel("wedge");
add("Cone", { "Radius:": "40 km", "Height:": "10 km" }, center);
panel("cone");

add("Orbit", {});
fields({ "Center 1: > Lat:": "36 0 0 N", "Center 1: > Lon:": "14 30 0 E", "Center 1: > Alt:": "20000 ft",
         "Center 2: > Lat:": "36 20 0 N", "Center 2: > Lon:": "15 30 0 E", "Center 2: > Alt:": "20000 ft",
         "Radius:": "5 nm" });
panel("orbit");

add("Line", {});
for (const [lat, lon] of [["36 0 0 N", "14 0 0 E"], ["36 30 0 N", "15 0 0 E"], ["36 0 0 N", "16 0 0 E"]]) {
    while (editor.enabled("->")) editor.press("->");
    fields({ "Lat:": lat });
    fields({ "Lon:": lon });
}
panel("line");

add("Rectangle", {});
editor.press("Edit");
view.move(35.5, 14);
view.drag({ lat: 35.5, lon: 14 }, { lat: 36.5, lon: 16 });
editor.press("Stop");
fields({ "Width:": "100 nm", "Height:": "60 nm" });
panel("rectangle");

add("Text", { "Name:": "Search area", "Font Size:": 18 }, center);
panel("text");
add("Free Draw", {});
panel("free-draw");

editor.press("Delete All");
const ship = addPlatform({ name: "Patrol Ship", lat: 35.9, lon: 14.8 });
add("Circle", { "Radius:": "25 nm" }, center);
editor.check("Attach:");
const picker = dialog("Select Platform");
picker.select("", "Patrol Ship");
picker.press("OK");
panel("attached");
