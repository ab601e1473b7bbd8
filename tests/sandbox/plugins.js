// Plug-ins come and go; a bad one is refused by name, and the host goes on.
include("lib/probe.js");
const libraries = environment("PROBE_DIRECTORY");
const lastLine = () => log()[log().length - 1].text;

for (const [file, message] of [["missing.so", "missing.so is refused: "],
                               ["probe-incomplete.so", "probe-incomplete.so is refused: it does not export HPI_CleanUpPlugin"],
                               ["probe-demanding.so", "probe-demanding.so is refused: it needs host build 13001, this is build 13000"],
                               ["probe-failing.so", "Probe: start-up failed with 7, so it is closed"],
                               ["probe.so", "probe.so is refused: it is Probe, which runs already, and one library is one plug-in"]]) {
    assert(!openPlugin(libraries + "/" + file));
    assert(lastLine().startsWith(message), lastLine());
}
const notALibrary = temporaryDirectory() + "/text.so";
writeFile(notALibrary, "no library");
assert(!openPlugin(notALibrary));
assert(lastLine().startsWith("text.so is refused: "), lastLine());
assertEqual(plugins().map(plugin => [plugin.name, plugin.version]), [["Probe", "1.0"]]);

// A tidy close leaves nothing behind, and the library leaves the process.
open();
assertEqual(closePlugin("Probe"), { gone: true, leftBehind: "" });
assertEqual(plugins(), []);
assertEqual(dialogs(), []);
assertEqual(menuItems("Plug-ins"), []);

// What an untidy one leaves is dropped by name: nothing of it may be called any more.
for (const delay of [60000, 2500]) {
    assert(openPlugin(libraries + "/probe.so"));
    open();
    for (const line of ["action Draw", "publish org.example/Probe", "observe", "menus", "grab",
                        "stream band 1 2", "screen-text L T Text", "create Mark 0 0",
                        "leave-everything", "timeout late " + delay])
        command(line);
    const { gone, leftBehind } = closePlugin("Probe");
    assert(gone);
    assertEqual(leftBehind, 'menu item "Probe & Gallery...", dialog "Probe", action "Draw", overlay text, ' +
                            'screen text "Text", timeout, platform "Mark", 1 overlay observer(s), ' +
                            '1 context menu callback(s), service "org.example/Probe", the grabbed mouse');
    assertEqual([dialogs(), menuItems("Plug-ins"), menuItems("Actions").slice(0, -1), screenTexts(), overlays(), platforms()],
                [[], [], [], [], [], []]);
    if (delay < 10000) wait(delay + 50);
    view.move({ x: 100, y: 100 });
    addPlatform({ name: "After" });
    clearScenario();
}
