// What the manual's picture scripts share. Their arguments: the directory for pictures, and one for overlay files
// whose name may be seen in a picture.
var pictures = args[0];
var files = args[1];
var editor = dialog("Overlay Editor");

function picturePath(name) { return pictures + "/" + name + ".png"; }

/// The screen shows what is due: a frame after the last event.
function settled() { wait(60); }

/// The dialog's "Changes:" follows within a second.
function savedMark(text) { waitFor(() => editor.captions().includes(text), "Changes: " + text); }

function pictureOfWindow(name) {
    settled();
    picture(picturePath(name));
}
function pictureOfView(name) {
    settled();
    view.picture(picturePath(name));
}
function pictureOfDialog(name, box = editor) {
    settled();
    box.picture(picturePath(name));
}

function openEditor(x = 740, y = 30) {
    menu("Plug-ins", "Overlay Editor...");
    editor.moveTo(x, y);
}
function lookAt(lat, lon, range, azimuth = 0, elevation = 90) {
    view.camera = { lat, lon, alt: 0, range, azimuth, elevation };
}
/// Shown in the host's View menu.
function showOnMap(...what) {
    for (const item of menuItems("View"))
        if (what.includes(item.text) && !item.checked) menu("View", item.text);
}
