// Every kind of shape, drawn beside the north pole and across it.
include("../lib/drawing.js");
drawEverything("pole", { lat: 89.9, lon: 30, range: 200000 });
