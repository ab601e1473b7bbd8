// One of two users who work on the same five files. Each shape has a name that nobody else gives; what was typed,
// deleted on purpose and told is printed for sharing.py, which judges.
const [work, me, rounds] = [environment("SHARED"), environment("USER_NAME"), Number(environment("ROUNDS"))];
const editor = dialog("Overlay Editor");
let seed = Number(environment("SEED"));
function random(n) {
    seed = (seed * 1103515245 + 12345) % 2147483648;
    return Math.floor(seed / 65536) % n;
}
const file = () => work + "/" + "abcde"[random(5)] + ".zel";
let typed = 0;
function add() {
    const name = `${me}-${++typed}-`;
    editor.choose("Shape:", "Circle");
    editor.press("Stop");
    editor.fill("Name:", name);
    editor.fill("Lat:", random(80));
    editor.fill("Radius:", 100 + random(900));
    print("TYPED", name);
}
function remove() {
    if (editor.items().length === 0) return;
    editor.select("All Shapes", random(editor.items().length));
    print("DELETED", editor.value("Name:"));
    editor.press("All Shapes > Delete");
}
const actions = [add, add, add, remove,
    () => { if (editor.enabled("Save")) editor.press("Save"); },
    () => { if (editor.enabled("Save")) editor.press("Save"); },
    () => { answerFileDialog(file()); editor.press("Save As..."); },
    () => {
        const [path, before] = [file(), editor.items()];
        answerFileDialog(path);
        const again = path === editor.value("File:");
        editor.press("...");
        // Who goes back to the file gives up what is not in it; Undo would bring it back.
        if (again) before.filter(name => !editor.items().includes(name)).forEach(name => print("DELETED", name));
    },
    () => {
        const path = file();
        openOverlay(path);
        overlayMenu(overlays().find(o => o.path === path).name, "Send to Overlay Editor");
    },
    () => { if (editor.enabled("New")) editor.press("New"); },
    () => {
        // All that a file holds.
        for (const name of editor.items()) {
            print("DELETED", name);
            editor.select("All Shapes", 0);
            editor.press("All Shapes > Delete");
        }
        if (editor.enabled("Save")) editor.press("Save");
    }];

menu("Plug-ins", "Overlay Editor...");
editor.moveTo(600, 0);
let told = 0;
function tell() {
    for (const entry of log().slice(told)) print("TOLD", entry.text);
    told = log().length;
}
for (let round = 0; round < rounds; ++round) {
    try {
        actions[random(actions.length)]();
    } catch (gone) {
        // Others have deleted or renamed the file meanwhile.
        if (!String(gone.message).match(/file dialog|undefined|No such file|not open|cannot|no file/i)) throw gone;
        print("MISSED", gone.message);
    }
    tell();
}
if (editor.enabled("New")) editor.press("New");
tell();
