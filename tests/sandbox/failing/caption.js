include("../lib/probe.js");
open();
probe.press("Pull");
