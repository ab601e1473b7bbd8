// Each way to draw and to drag, over Hawaii; what else the kinds do with their points is the tools' own.
include("../lib/drawing.js");
draw("Hawaii", { lat: 21, lon: -158, range: 200000 });
