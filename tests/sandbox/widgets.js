// Every kind of widget: what it shows, what a person can do with it, and what its callback is told.
include("lib/probe.js");
open();

// Captions are split at the tab; the probe's own wrapper comes back as the sender.
assertEqual(probe.captions().slice(0, 5), ["Probe", "Controls", "Text:", "Locked:", "Count:"]);
assertEqual(probe.tooltip("Push & Pull"), "A button");
assertEqual(probe.tooltip("Fruit:"), "What to eat");

// A text field calls back once, when it is left or Enter is pressed, and only when it was changed.
said();
probe.fill("Text:", "höher 東");
assertEqual(said(), ["text: höher 東"]);
probe.leave("Text:");
probe.fill("Text:", "höher 東");
assertEqual(said(), ["text: höher 東"], "typed anew");
probe.type("Text:", "typed");
assertEqual(said(), []);
probe.leave("Text:");
assertEqual(said(), ["text: typed"]);
probe.type("Text:", "lost?");
view.click({ x: 300, y: 300 });
assertEqual(said(), ["text: lost?"], "a click into the view commits the field");
assertThrows(() => probe.fill("Locked:", "x"), /read-only/);

// What the plug-in sets calls nothing back.
command("set-real text 0.1");
assertEqual(probe.value("Text"), "0.1");
assertEqual(command("real text"), "0.1");
command("set-int text -7");
assertEqual(command("int text"), "-7");
command("set-text text many words");
assertEqual(probe.value("Text:"), "many words");
assertEqual(command("int text"), "0");
command("set-int count -42");
assertEqual(probe.number("Count:"), -42);
command("check draw 1");
assertEqual(probe.checked("Draw:"), true);
command("set-text fruit Cherry");
assertEqual(probe.value("Fruit:"), "Cherry");
command("set-int fruit -1");
assertEqual(probe.value("Fruit:"), "");
assertEqual(said(), []);

// What a person does calls back.
probe.fill("Count:", -9999);
assertEqual(said(), ["count: -9999"]);
assertEqual(probe.options("Fruit:"), ["Apple", "Banana", "Cherry"]);
probe.choose("Fruit:", "Banana");
assertEqual(said(), ["fruit: Banana"]);
assertEqual(command("int fruit"), "1");
assertEqual(command("option fruit 2"), "Cherry");
assertThrows(() => probe.choose("Fruit:", "Plum"), /no option "Plum", but: Apple, Banana, Cherry/);
probe.check("Draw:");
assertEqual(said(), []);
probe.uncheck("Draw:");
assertEqual(said().length, 1);
assertEqual(probe.checked("Draw:"), false);
probe.color("Colour:", "0x12345678");
assertEqual(said(), ["colour: 0x12345678"]);
assertEqual(command("int colour"), String(0x12345678));
command("set-int colour " + (0xff000080 | 0));
assertEqual(probe.value("Colour:"), "0xff000080");
said();

// Radio buttons of one parent exclude each other; a button becomes a toggle by its first check.
probe.press("Left");
probe.press("Right");
assertEqual([probe.checked("Left"), probe.checked("Right")], [false, true]);
command("check right 0");
assertEqual(probe.checked("Right"), false);
said();
probe.press("Push & Pull");
probe.press("Toggle");
assertEqual(said(), ["push: Push & Pull", "toggle: Toggle"]);
assertEqual(probe.checked("Toggle"), true);
probe.press("Toggle");
assertEqual(probe.checked("Toggle"), false);

// A table that is filled by column: the field stands to the right of its label.
probe.fill("First:", "1st");
probe.fill("Second:", "2nd");
assertEqual(said().slice(1), ["first: 1st", "second: 2nd"]);

// A name is never markup: this one would stand in three lines, and another could name a file without an end.
call(907, "text", "frame", "<br>Marked<br>", ">marked");
call(907, "text", "frame", "Plain", ">plain");
assertEqual(probe.place("<br>Marked<br>").height, probe.place("Plain").height, "as it stands");

// Shown, enabled, a switcher's page.
command("enable push 0");
assertEqual(probe.enabled("Push & Pull"), false);
assertThrows(() => probe.press("Push & Pull"), /disabled/);
command("show row 0");
assertEqual(command("shown push"), "0");
assert(!probe.has("Toggle"));
command("show row 1");
assertEqual(command("shown push"), "1");
assert(probe.has("Page one") && !probe.has("Page two"));
command("page 1");
assert(!probe.has("Page one") && probe.has("Page two"));
command("set-text box Knobs|of the probe");
assert(probe.has("Knobs") && !probe.has("Controls"));
assertEqual(probe.value("Knobs > Count:"), "-9999");
ask(158, "i0", "i70", "ppng", ">icon");
ask(158, "i2", "pmenu-item", "picon");
ask(158, "i1", "pdialog", "picon");
ask(158, "i3", "picon");
assertEqual(menuItems("Plug-ins")[0].icon, true);

// The window manager's close button hides the dialog and tells its observer.
said();
probe.close();
assert(!probe.shown);
assertEqual(said(), ["dialog closed"]);
open();

// An observer's exception stays with the plug-in.
call(114, "text", "dialog", "Second", ">second");
call(160, "pointer", "second", "thrower");
call(115, "bare", "second");
assertEqual(misuses(() => dialog("Second").close()),
            ['Probe: an exception left close observer of dialog "Second"']);
call(100, "pointer", "second", "#0");

// Destroying a widget takes what stands in it along.
command("destroy switcher");
assert(!probe.has("Page two"));
probe.fill("Command:", "destroy dialog");
assert(!probe.shown);
