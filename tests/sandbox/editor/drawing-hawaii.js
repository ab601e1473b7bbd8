// Every kind of shape, drawn over Hawaii.
include("../lib/drawing.js");
drawEverything("hawaii", { lat: 21, lon: -158, range: 200000 });
