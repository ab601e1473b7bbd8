// Across 180 degrees, the kinds that reckon with longitudes.
include("../lib/drawing.js");
draw("the date line", { lat: -17, lon: 180, range: 200000 }, ["Line", "Rectangle", "Ellipse"]);
