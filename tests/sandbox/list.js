// A list: columns, the plug-in's data, the selection.
include("lib/probe.js");
open();
for (const [data, text] of [[11, "Anna|Ulm"], [22, "Bert|Kiel"], [33, "Cleo|Bonn"]]) command(`append ${data} ${text}`);
assertEqual(command("append 44 Dora"), "3");
assertEqual(probe.items(), ["Anna\tUlm", "Bert\tKiel", "Cleo\tBonn", "Dora"]);
assertEqual(command("count"), "4");
assertEqual(command("selected"), "-1");
assertEqual(command("data 1"), "22");
said();

probe.select("", "Bert");
assertEqual(said(), ["list: Bert\tKiel"]);
assertEqual(command("selected"), "1");
probe.select("", 0);
assertEqual(said(), ["list: Anna\tUlm"]);

command("select 2");
assertEqual(probe.selected(), 2);
command("deselect");
assertEqual(probe.selected(), -1);
command("rename 2 Carl|Rom");
assertEqual(command("item 2"), "Carl\tRom");
command("add-header Age");
command("select 1");
command("remove 1");
assertEqual(command("selected"), "-1", "the selection does not move on to a neighbour");
assertEqual(probe.items(), ["Anna\tUlm", "Carl\tRom", "Dora"]);
assertEqual(command("data 1"), "33");
command("clear");
assertEqual(command("count"), "0");
assertEqual(said(), [], "changes by the plug-in call nothing back");
