include("../lib/probe.js");
open();
command("ask-load");
