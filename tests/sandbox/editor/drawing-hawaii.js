// Every kind of shape but free drawings, drawn over Hawaii.
include("../lib/drawing.js");
draw("Hawaii", { lat: 21, lon: -158, range: 200000 });
