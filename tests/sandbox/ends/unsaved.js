// Something that nobody saved; then nothing more, until somebody ends the program.
const editor = dialog("Overlay Editor");
menu("Plug-ins", "Overlay Editor...");
editor.choose("Shape:", "Circle");
editor.fill("Lat:", 20);
editor.fill("Radius:", 1000);
writeFile(args[0], "");
for (;;) wait(20);
