// The mouse of the view, the cursor's position, the camera, screen texts, refreshes.
include("lib/probe.js");
open();
const radians = Math.PI / 180;
const atCursor = () => ask(424, "i1", "i1").reals;
const atPixel = (x, y) => ask(424, "i0", "i" + x, "i" + y, "i1").reals;
assertEqual(atCursor(), [], "the mouse has not been in the view");

// The camera looks where the plug-in says; its eye stands above the centre at the range.
command(`look ${47 * radians} ${8 * radians} 50000 0 ${Math.PI / 2}`);
assertNear(view.camera.lat, 47, 1e-9);
assertNear(view.camera.range, 50000, 1e-6);
const eye = ask(418, "i0").reals;
assertNear(eye[0] / radians, 47, 1e-9);
assertNear(eye[2], 50000, 1e-3);

// What the cursor service answers is where the view shows the place: within the half pixel of the event.
const meters = 50000 * 2 * Math.tan(0.3) / view.size.height;
const at = view.move(47.01, 8.02);
assert(distance(at, { lat: 47.01, lon: 8.02 }) < meters);
const answer = atCursor();
assertNear(answer[0] / radians, at.lat, 1e-12);
assertNear(answer[1] / radians, at.lon, 1e-12);
assertEqual(answer[2], 0);
assertEqual(atPixel(at.x, at.y), answer);
assert(status().startsWith("47° 00."), status());
view.camera = { lat: 0, lon: 0, range: 3e7 };
assertEqual(atPixel(2, 2), []);
view.move({ x: 2, y: 2 });
assertEqual(atCursor(), []);
assertEqual(view.cursor(), null);

// Every mouse event reaches the plug-in, with modifiers, and a motion before a press that had none; what it consumes does not
// move the camera.
command("mouse consume");
said();
view.move({ x: 300, y: 200 });
view.press({ x: 300, y: 200 }, { modifiers: "shift+control" });
view.release({ x: 310, y: 200 }, { modifiers: "alt" });
view.press({ x: 1, y: 2 }, { button: "middle" });
view.release({ x: 1, y: 2 }, { button: "middle" });
view.click({ x: 5, y: 6 }, { button: "right" });
view.wheel({ x: 7, y: 8 }, -2);
view.leave();
assertEqual(said().map(line => line.replace("mouse ", "")), [
    "6 at 300,200 modifiers 0 wheel 0", "0 at 300,200 modifiers 3 wheel 0", "1 at 310,200 modifiers 4 wheel 0",
    "6 at 1,2 modifiers 0 wheel 0", "2 at 1,2 modifiers 0 wheel 0", "3 at 1,2 modifiers 0 wheel 0",
    "6 at 5,6 modifiers 0 wheel 0", "4 at 5,6 modifiers 0 wheel 0", "5 at 5,6 modifiers 0 wheel 0", "9 at 7,8 modifiers 0 wheel -240", "8 at 7,8 modifiers 0 wheel 0"]);
view.doubleClick({ x: 9, y: 9 });
assertEqual(said().map(line => line.split(" ")[1]), ["6", "0", "1", "7", "1"]);
command("mouse pass");
view.doubleClick({ x: 9, y: 9 });
assertEqual(said().map(line => line.split(" ")[1]), ["0", "1", "7", "0", "1"], "nobody's double click is a press");
command("mouse consume");
const before = view.camera;
view.drag({ lat: 0, lon: 0 }, { lat: 10, lon: 10 });
view.wheel(0, 0, 3);
assertEqual(view.camera, before, "the plug-in consumed it");
command("mouse off");
view.drag({ lat: 0, lon: 0 }, { lat: 10, lon: 10 });
assert(view.camera.lat < -5, "dragged");
const range = view.camera.range;
view.wheel({ x: 300, y: 300 }, 3);
assert(view.camera.range < range, "zoomed");

// While the mouse is grabbed the view sends what happens beyond its edges too.
command("mouse consume");
command("grab");
said();
view.move({ x: -50, y: 5000 });
assertEqual(said(), ["mouse 6 at -50,5000 modifiers 0 wheel 0"]);
ask(155, "i1");
command("mouse off");

// A redraw is one frame, however often it is asked for; overlays that the hook changes cause none.
wait(100);
let frames = view.frameCount;
command("redraw");
command("redraw");
wait(100);
assert(view.frameCount > frames && view.frameCount <= frames + 3, "frames: " + (view.frameCount - frames));
command("stream-in-hook on");
command("redraw");
wait(200);
frames = view.frameCount;
wait(300);
assert(view.frameCount - frames <= 2, "the hook's overlays redraw for ever");
assertEqual(overlays().filter(entry => entry.stream).length, 1);
command("stream-in-hook off");
command("unload band");

// Screen texts keep to the corner that their record names.
assertEqual(command("screen-text L T Hello_You"), "done");
assertEqual(screenTexts(), [{ text: "Hello You", x: 20, y: 30 }]);
command("no-screen-text");
command("screen-text R B Corner");
const text = screenTexts()[0];
assert(text.x < view.size.width - 20 && text.x > view.size.width - 120 && text.y > view.size.height - 60,
       JSON.stringify(text));
command("no-screen-text");
assertEqual(screenTexts(), []);
