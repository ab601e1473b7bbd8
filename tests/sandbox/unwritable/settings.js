// Settings that cannot be written hold for this run, and one message says so.
include("../lib/probe.js");
open();
command("store Probe/Key value");
assertEqual(command("read Probe/Key"), "value");
const complaints = () => log().filter(entry => entry.text.includes("cannot be written"));
waitFor(() => complaints().length > 0);
command("store Probe/Key other");
wait(700);
assertEqual(command("read Probe/Key"), "other");
assertEqual(complaints().length, 1);
assertEqual(complaints()[0].severity, 2);
