// Settings, file dialogs, timeouts, actions, published services, notifications.
include("lib/probe.js");
open();

// Settings are kept on disk, whatever they hold.
command("store Probe/Key a=b;|ü");
assertEqual(command("read Probe/Key"), "a=b;\tü");
assertEqual(command("read Probe/Unset"), "");
assertEqual(setting("Probe/Key"), "a=b;\tü");
assert(readFile(settingsFile()).includes("Key="), "written to the file");

// File dialogs answer with what was typed, and remember it.
const work = temporaryDirectory();
const file = work + "/some overlay.zel";
writeFile(file, "x");
answerFileDialog(file);
assertEqual(command("ask-load"), file);
assertEqual(setting("PROBE/Last"), file);
answerFileDialog(null);
assertEqual(command("ask-load"), "cancelled");
answerFileDialog(work + "/new");
assertEqual(command("ask-save"), work + "/new.zel", "the first filter's suffix is added");
answerFileDialog(file);
assertEqual(command("ask-save"), file, "replaced when asked");
answerFileDialog(file, { overwrite: false });
assertEqual(command("ask-save"), "cancelled");
answerFileDialog(work);
assertEqual(command("ask-directory"), work);
answerFileDialog(work + "/missing.zel");
assertThrows(() => command("ask-load"), /missing\.zel/);

// A timeout fires once, with its data; one that is cancelled does not.
said();
command("timeout never 1500");
command("cancel never");
command("timeout soon 20");
wait(1600);
assertEqual(said(), ["soon fired with its data"]);

// An action's mark is the plug-in's alone; choosing the action only asks.
command("action Draw_It");
const item = () => menuItems("Actions").find(entry => entry.text === "Draw It");
menu("Actions", "Draw It");
assertEqual(said(), ["Draw It asked for 1"]);
assertEqual(item().checked, false);
ask(319, "i1", "i1", "sProbe", "SDraw_It");
assertEqual(item().checked, true);
menu("Actions", "Draw It");
assertEqual(said(), ["Draw It asked for 0"]);
assertEqual(item().checked, true);
ask(319, "i2", "paction");
assert(!item(), "the action is gone from the menu");

// Keys: defaults by the action's name, the user's own from the settings, a taken one not a second time.
setSetting("Keys/Probe: Draw It", "Ctrl+J; Ctrl+O");
setSetting("Keys/Probe: Finish Overlay Shape", "none");
for (const label of ["Undo_Overlay_Edit", "Delete_Overlay_Shape", "Finish_Overlay_Shape", "Draw_It"]) command("action " + label);
said();
view.click({ x: 300, y: 300 });
for (const key of ["Ctrl+Z", "Del", "Return", "Ctrl+J"]) pressKey(key);
assertEqual(said(), ["Undo Overlay Edit asked for 1", "Delete Overlay Shape asked for 1", "Draw It asked for 1"]);
// A field keeps the keys that it uses; what is typed is undone there until it is handed over.
probe.type("Text:", "ab");
for (const key of ["Backspace", "Del", "X", "Ctrl+Z"]) pressKey(key);
assertEqual(said(), []);
assertEqual(probe.value("Text:"), "a");
pressKey("Return");
assertEqual(said(), ["text: a"]);
pressKey("Ctrl+Z");
assertEqual([said(), probe.value("Text:")], [["Undo Overlay Edit asked for 1"], "a"]);

assertEqual(command("publish org.example/Probe"), "1");
assertEqual(command("publish org.example/Probe"), "0", "the name is taken");
assertEqual(command("find-service org.example/Probe"), "gallery", "its own");
assertEqual(command("withdraw org.example/Probe"), "1");
assertEqual(command("find-service org.example/Probe"), "none");

said();
ask(325, "i0", "i2", "sprobe", "Sa_failure");
ask(325, "i1", "i0", "sprobe", "Sa_trace");
assertEqual(log().slice(-2), [{ severity: 2, source: "probe", text: "a failure" },
                              { severity: 6, source: "probe", text: "a trace" }]);

// The identity that was pushed last.
const identity = () => ask(16, "i0").pointers;
assertEqual(identity(), []);
ask(16, "i1", "pinstance");
assertEqual(identity(), ["instance"]);
ask(16, "i2", "p#0");
assertEqual(identity(), []);
