// A view in which nobody moves draws no frame, whatever is being edited or half drawn in it.
const editor = dialog("Overlay Editor");
view.camera = { lat: 40, lon: 6, alt: 0, range: 4000000, azimuth: 0, elevation: 90 };
menu("Plug-ins", "Overlay Editor...");
editor.moveTo(820, 20);

const here = { lat: 42, lon: 5 };
const there = { lat: 38, lon: 8 };
/// Lets what was asked for be drawn first.
function staysIdle(what) {
    let frames;
    waitFor(() => {
        frames = view.frameCount;
        wait(150);
        return view.frameCount === frames;
    }, what + ": the view to come to rest");
    wait(400);
    assertEqual(view.frameCount, frames, what);
}

for (const kind of editor.options("Shape:").slice(1)) {
    editor.choose("Shape:", kind);
    view.move(here);
    staysIdle(kind + ", nothing drawn yet");
    view.press(here);
    view.move(there);
    view.move({ lat: 38, lon: 7 });
    staysIdle(kind + ", the button held");
    view.release({ lat: 38, lon: 7 });
    view.move(here);
    staysIdle(kind + ", over a point");
    editor.press("Delete All");
}
