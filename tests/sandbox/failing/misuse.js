include("../lib/probe.js"); open();
raw("call 152 bool text 1");
