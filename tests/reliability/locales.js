// Everything that is written in the editor, for each shape of a file and in all units; then the file, saved.
const [directory] = args;
const editor = dialog("Overlay Editor");
menu("Plug-ins", "Overlay Editor...");
editor.moveTo(20, 20);
answerFileDialog(directory + "/shapes.zel");
editor.press("...");
const fields = ["Radius:", "Lat:", "Lon:", "Lon: > Alt:", "Name:"];
for (const unit of ["km", "nm"]) {
    editor.choose("Rng:", unit);
    for (const name of editor.items("All Shapes")) {
        editor.select("All Shapes", name);
        print(editor.captions().join("\n"));
        for (const field of fields) if (editor.has(field)) print(field + " " + editor.value(field));
    }
}
editor.select("All Shapes", 0);
editor.fill("Radius:", "1,5");
print(editor.captions().join("\n"));
editor.fill("Radius:", "1234.5678");
answerFileDialog(directory + "/saved.zel");
editor.press("Save As...");
print(editor.captions().join("\n"));
print(log().map(entry => entry.text).join("\n"));
view.picture(directory + "/view.png");
