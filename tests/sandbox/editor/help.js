// Help opens the manual of this build, where the host says that its files are.
const editor = dialog("Overlay Editor");
const manual = environment("HALVIS_DIR") + "/doc/HALVIS/Overlay_Editor_Plugin.pdf";
const opened = environment("OPENED");
assert(manual.includes("/share/halvis-sandbox/"), manual);
if (fileExists(opened)) removeFile(opened);

menu("Plug-ins", "Overlay Editor...");
const messages = log().length;
editor.press("Help...");
if (environment("MANUAL") === "built") {
    waitFor(() => fileExists(opened) && readFile(opened) !== "", "the desktop to be asked");
    assertEqual(readFile(opened), "file://" + manual);
    assert(readFile(manual).startsWith("%PDF-"), manual);
    assertEqual(log().slice(messages), []);
} else {
    assertEqual(log().slice(messages).map(entry => entry.text), ["Could not find Overlay Editor Documentation."]);
}
