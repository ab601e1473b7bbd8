// Beside the north pole and across it, the kinds that go different ways there.
include("../lib/drawing.js");
draw("the pole", { lat: 89.9, lon: 30, range: 200000 }, ["Polygon", "Rectangle", "Ellipse"]);
