// The host's probe finds nothing wrong here, and nothing left out.
const box = dialog("Host Probe");
menu("Plug-ins", "Host Probe...");
misuses(() => box.press("Run"));
const asked = text => waitFor(() => box.captions().some(caption => caption.includes(text)), text);
asked("Click once into the view");
view.move({ x: 300, y: 300 });
view.click();
asked("Double-click into the view");
view.doubleClick({ x: 300, y: 300 });
asked("right button");
view.move({ x: 310, y: 300 });
view.press({ x: 310, y: 300 }, { button: "right" });
view.release({ x: 310, y: 300 }, { button: "right" });
asked("Type 42");
box.fill("Field:", "42");
asked("Choose");
box.choose("Menu:", "Two");
asked("Double-click the row");
box.select("", "Two", { enter: true });
asked("Probed Action");
menu("Actions", "Probed Action");
asked("Probed Item");
overlayMenu("host-probe.txt.zel", "Probed Item");
for (const [question, answer] of [["cancel the dialog", null], ["save as", "/probed.txt"], ["a directory", ""]]) {
    asked(question);
    answerFileDialog(answer === null ? null : environment("HOME") + answer);
    box.press("File...");
}
asked("Close this window");
box.close();
wait(300);
closePlugin("HostProbe");
const report = readFile(environment("HOME") + "/host-probe.txt");
assertEqual(report.split("\n").filter(line => line && !line.startsWith("holds")).map(line => line.replace(/^\d+ hold/, "N hold")),
            ["N hold, 0 left out, 0 wrong, 0 wait, 0 skipped"], report);
