// Draws what nobody saves, until somebody kills the program.
include("manual.js");
lookAt(35.9, 15.9, 640000);
openEditor(672, 30);
editor.choose("Shape:", "Circle");
view.drag({ lat: 36, lon: 15 }, { lat: 36.3, lon: 15.7 });
editor.fill("Name:", "Range ring");
editor.press("Stop");
answerFileDialog(files + "/patrol.zel");
editor.press("Save As...");
editor.choose("Shape:", "Line");
for (const [lat, lon] of [[35.9, 14.6], [35.3, 15.2], [35.4, 16.6]]) view.click(lat, lon);
editor.fill("Name:", "Route");
wait(1500);
writeFile(files + "/ready", "");
for (;;) wait(20);
