// Draws, types and saves until somebody ends the program. Behind each action a note of the names that there are, and when.
const editor = dialog("Overlay Editor");
menu("Plug-ins", "Overlay Editor...");
editor.moveTo(820, 20);
view.camera = { lat: 21, lon: -158, alt: 0, range: 100000, azimuth: 0, elevation: 90 };
const place = () => ({ lat: 21 + 0.3 * (Math.random() - 0.5), lon: -158 + 0.3 * (Math.random() - 0.5) });
const [directory] = args;
answerFileDialog(directory + "/saved.zel");
const first = editor.items("All Shapes").length;
for (let count = first; ; ++count) {
    const kind = ["Circle", "Line", "Text"][count % 3];
    editor.choose("Shape:", kind);
    // Far enough: a click alone makes no circle that a file could hold.
    if (kind === "Circle") {
        const middle = place();
        view.drag(middle, { lat: middle.lat + 0.05, lon: middle.lon + 0.1 * Math.random() });
    }
    if (kind === "Line") for (let i = 0; i < 4; ++i) view.click(place());
    if (kind === "Text") view.click(place());
    editor.press("Stop");
    editor.fill("Name:", "N-" + count + "-");
    if (count === first + 2) editor.press("Save As...");
    if (count % 7 === 6) editor.press("Save");
    writeFile(directory + "/notes/" + count, Date.now() + "\n" + editor.items("All Shapes").join("\n"));
    wait(20);
}
