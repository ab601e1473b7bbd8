// What a user does with the keys and with fields: every step is taken back and done again.
menu("Plug-ins", "Overlay Editor...");
const editor = dialog("Overlay Editor");
editor.moveTo(820, 20);
view.camera = { lat: 21, lon: -158, alt: 0, range: 100000, azimuth: 0, elevation: 90 };
const at = (east, north) => ({ lat: 21 + north, lon: -158 + east });
const items = () => editor.items("All Shapes").join();
const text = () => overlays().filter(o => !o.path).map(o => o.text).join();

editor.choose("Shape:", "Line");
for (let i = 0; i < 5; ++i) view.click(at(0.05 * i - 0.15, 0.02 * i));
pressKey("Backspace");
pressKey("Return");
assert(screenTexts().every(note => !note.text.includes("Click")), "drawing is over");

// One field, one step; its text that is not taken over goes first.
editor.choose("Shape:", "Circle");
view.drag(at(0, 0), at(0.05, 0));
pressKey("Return");
const circle = text();
editor.fill("Radius:", "3000");
editor.fill("Radius:", "4000");
assert(editor.tooltip("Undo").startsWith("Undo: change the size of Circle"), editor.tooltip("Undo"));
editor.type("Name:", "Bay");
editor.press("Undo");
assert(items().includes("Circle"), "the name that was typed last goes first: " + items());
editor.press("Undo");
assertEqual(text(), circle);
editor.press("Redo");
editor.press("Redo");
assertEqual(items(), "Line 1,Bay");
for (let i = 0; i < 20; ++i) pressKey("Ctrl+Z");
assertEqual(items(), "");
waitFor(() => editor.captions().includes("None"), "no changes", 3000);
assert(!editor.enabled("Undo"), "all is undone");
for (let i = 0; i < 20; ++i) pressKey("Ctrl+Y");
assertEqual(items(), "Line 1,Bay");
