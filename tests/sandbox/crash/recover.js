// What the next start offers is taken, named and saved.
const editor = dialog("Overlay Editor");
menu("Plug-ins", "Overlay Editor...");
const [directory] = args;
let found = [];
while (editor.has("Recover")) {
    editor.press("Recover");
    found = found.concat(editor.items("All Shapes"));
    answerFileDialog(directory + "/recovered.zel");
    editor.press("Save As...");
    removeFile(directory + "/recovered.zel");
}
print(found.map(name => "recovered " + name).join("\n"));
