include("../lib/probe.js"); open();
command("misuse wrong-record");
