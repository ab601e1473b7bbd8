// What the manual says that fields take and refuse.
const editor = dialog("Overlay Editor");
menu("Plug-ins", "Overlay Editor...");
editor.choose("Shape:", "Arc");
editor.press("Stop");
editor.fill("Prec:", 6);
editor.choose("LLA:", "deg");

function takes(field, texts, expected, tolerance) {
    for (const text of texts) {
        editor.fill(field, "1");
        editor.fill(field, text);
        assertNear(editor.number(field), expected, tolerance, field + " " + text);
    }
}
function refuses(field, texts) {
    editor.fill(field, "1");
    const before = editor.value(field);
    for (const text of texts) {
        const messages = log().length;
        editor.fill(field, text);
        assertEqual(editor.value(field), before, field + " " + text);
        assertEqual(log().slice(messages).map(entry => entry.severity), [3], field + " " + text);
    }
}

takes("X Radius:", ["5 nm", "5nm", "5 NMI", "5 nautical miles", "9260", "9.26 km", "9.26e3 metres"], 9260, 1e-6);
takes("X Radius:", ["3000 FT", "3000 foot"], 914.39997, 1e-6);
takes("X Radius:", ["1 mile", "1 mi"], 1609.344, 1e-6);
takes("X Radius:", ["1 dm", "1 data mile"], 1828.800164, 1e-6);
takes("X Radius:", [".5 km", "500"], 500, 1e-6);
refuses("X Radius:", ["12,5", "1,000", "0", "-5", "20004 km", "wide", "5 deg", "5 parsec"]);
takes("Lat:", ["21.3083333333", "21 18.5", "21:18.5", "21 18 30", "21:18:30", "21°18'30\"", "21d18m30s", "21 deg 18 min 30 sec",
               "21 18 30 N", "N 21 18 30", "21°18'30\"N"], 21 + 18.5 / 60, 1e-6);
takes("Lat:", ["-21 18 30", "21 18 30 S", "s 21 18.5"], -21 - 18.5 / 60, 1e-6);
takes("Lon:", ["-157.5", "157 30 W", "157.5w"], -157.5, 1e-6);
refuses("Lat:", ["90.5", "21 E", "-21 S", "21.5 18", "21 60", "21 18 60", "21d30s", "21D18M30S", "north"]);
refuses("Lon:", ["180.5", "21 N"]);
takes("End Angle:", ["90", "90 deg", "90 0 0", "1600 mils", "1600 mil", "1570.7963268 mrad", "1.57079632679 rad"], 90, 1e-6);
takes("End Angle:", ["1 bam"], 36.475626, 1e-6);
refuses("Line Width:", ["3.7", "-1", "10000"]);

editor.choose("Pos:", "MGRS");
const square = () => [editor.value("GZD:"), editor.value("Easting/Northing:")];
for (const text of ["04Q FJ", "4Q FJ", "4qfj"])
    for (const numbers of ["12345 67890", "12345/67890", "1234567890"]) {
        editor.fill("GZD:", "33S VA 00000 00000");
        editor.fill("GZD:", text);
        editor.fill("Easting/Northing:", numbers);
        assertEqual(square(), ["04Q FJ", "12345 67890"], text + " " + numbers);
    }
for (const field of ["GZD:", "Easting/Northing:"]) {
    editor.fill(field, "33S VA 00000 00000");
    editor.fill(field, "4q fj 12345 67890");
    assertEqual(square(), ["04Q FJ", "12345 67890"], field);
}
editor.fill("GZD:", "4Q FJ 1 6");
assertEqual(square(), ["04Q FJ", "10000 60000"], "the south-west corner");
editor.fill("GZD:", "Z AH 12345 67890");
assertEqual(square(), ["Z AH", "12345 67890"], "near the pole");
