// Every kind of shape, drawn across 180 degrees.
include("../lib/drawing.js");
drawEverything("date-line", { lat: -17, lon: 180, range: 200000 });
