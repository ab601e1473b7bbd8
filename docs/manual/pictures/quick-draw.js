// Window: 1100x760

// Quick drawing: the menu, a shape as it is drawn, several of them, the note of the platform.
include("lib/manual.js");
lookAt(36, 15.2, 480000);
answerFileDialog(files);
menu("Actions", "Set Quick Shape Directory");
addPlatform({ name: "Patrol Ship", lat: 35.4, lon: 16.4, heading: 300, speed: 9 });
const finish = () => view.click(34.6, 13.6, { button: "right" });
function drag(from, to) {
    view.move(from);
    view.drag(from, to, { steps: 1 });
    finish();
}
menuPicture("Actions", picturePath("quick-menu"));

menu("Actions", "Yellow Shape Color");
menu("Actions", "Quick Circle Draw");
drag({ lat: 36.4, lon: 14.2 }, { lat: 36.4, lon: 14.8 });
menu("Actions", "Green Shape Color");
menu("Actions", "Quick Rectangle Draw");
drag({ lat: 35.2, lon: 13.9 }, { lat: 35.7, lon: 14.9 });
menu("Actions", "Orange Shape Color");
menu("Actions", "Quick Poly Draw");
for (const [lat, lon] of [[36.2, 15.5], [36.7, 16.2], [36.3, 16.9], [35.9, 16.2]]) {
    view.move(lat, lon);
    view.click(lat, lon);
}
finish();
menu("Actions", "Attach Quick Shape");
menu("Actions", "Pick Attach Platform");
view.move(35.4, 16.4);
view.click(35.4, 16.4);
menu("Actions", "White Shape Color");
menu("Actions", "Quick Circle Draw");
view.move(35.4, 16.4);
view.press(35.4, 16.4);
view.move(35.5, 16.7);
view.move(35.55, 16.8);
pictureOfWindow("quick-shapes");
