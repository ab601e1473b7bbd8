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
command("timeout soon 20");
command("timeout never 20");
command("cancel never");
wait(100);
assertEqual(said(), ["soon fired with its data"]);

// An action's mark is the plug-in's alone; choosing the action only asks.
command("action Draw_It");
const item = () => menuItems("Actions").find(entry => entry.text === "Draw It");
menu("Actions", "Draw It");
assertEqual(said(), ["Draw It asked for 1"]);
assertEqual(item().checked, false);
command("check-action 1 Draw_It");
assertEqual(item().checked, true);
menu("Actions", "Draw It");
assertEqual(said(), ["Draw It asked for 0"]);
assertEqual(item().checked, true);
command("destroy-action Draw_It");
assert(!item(), "the action is gone from the menu");

assertEqual(command("publish org.example/Probe"), "1");
assertEqual(command("publish org.example/Probe"), "0", "the name is taken");
assertEqual(command("find-service org.example/Probe"), "own");
assertEqual(command("withdraw org.example/Probe"), "1");
assertEqual(command("find-service org.example/Probe"), "none");

said();
command("notify 2 a failure");
command("debug a trace");
assertEqual(log().slice(-2), [{ severity: 2, source: "probe", text: "a failure" },
                              { severity: 6, source: "probe", text: "a trace" }]);
assertEqual(command("identity"), "kept");
