// Window: 1160x930
// After: lib/crash.js

// A host has ended without a word: the editor offers what was not saved.
include("lib/manual.js");
openEditor(200, 30);
pictureOfDialog("journal-offer");
