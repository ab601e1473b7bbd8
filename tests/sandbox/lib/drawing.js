// Kinds of shapes drawn with the mouse, and each of their points dragged. After each step the text that the host shows
// has the numbers that the mouse meant; GeographicLib and the view's picking are the judges.
//
//     draw("the pole", { lat: 89.9, lon: 30, range: 200000 }, ["Circle", "Line"])
//
// Without kinds it is all of them. With an argument, pictures land in that directory.

const editor = dialog("Overlay Editor");
const pictures = args[0];

// What the host shows

/// The blocks of a text: [{ kind, lines: { keyword: [[numbers...]] } }].
function blocks(text) {
    return text.split("start\n").slice(1).map(block => {
        const lines = block.split("\nend")[0].split("\n");
        const found = { kind: lines[0].split(" ")[0], lines: {} };
        for (const line of lines.slice(1)) {
            const [keyword, ...values] = line.split(" ");
            (found.lines[keyword] = found.lines[keyword] || []).push(values.map(Number));
        }
        return found;
    });
}
/// What is shown of the shape; the rubber band is orange.
function shownBlocks() {
    const texts = overlays().filter(o => !o.path).map(o => o.text);
    assert(!texts.some(text => text.includes("0xff0073ff")), "no rubber band is left");
    return texts.length ? blocks(texts[0]) : [];
}
const placeOf = ([lat, lon, alt]) => ({ lat, lon, alt: alt || 0 });

// Where things are on the screen

let middle, pixel;  // the second in metres
const at = ([x, y]) => ({ x: middle.x + x, y: middle.y + y });
function drag(from, to) { return view.drag(at(from), at(to), { steps: 3 }); }
const away = [-260, -200];

function axesOf(h) {
    h.X = destination(h.Center.lat, h.Center.lon, 90, h.rx);
    h.Y = destination(h.Center.lat, h.Center.lon, 0, h.ry);
    return h;
}

// The kinds: how each is drawn, which answers its points by name; what becomes of them when one is dragged
// to a place; what must stand in the file.

const circle = {
    points: ["Edge", "Center"],
    draw() { const d = drag([0, 0], [150, -40]); return { Center: d.from, Edge: d.to }; },
    dragged(h, name, to) { h[name] = to; return h; },
    numbers(h) { return { center: h.Center, radius: distance(h.Center, h.Edge) }; }
};
const twoRadii = {
    points: ["X", "Y", "Center"],
    draw() {
        const first = drag([0, 0], [170, 20]);
        const second = drag([60, -50], [20, -110]);
        return axesOf({ Center: first.from, rx: distance(first.from, first.to), ry: distance(first.from, second.to) });
    },
    dragged(h, name, to) {
        if (name === "Center") h.Center = to;
        else h[name === "X" ? "rx" : "ry"] = distance(h.Center, to);
        return axesOf(h);
    },
    numbers(h) { return { center: h.Center, majoraxis: 2 * h.rx, minoraxis: 2 * h.ry }; }
};
const corners = {
    points: ["First", "Last"],
    draw() { const d = drag([-60, 70], [120, -50]); return { First: d.from, Last: d.to }; },
    dragged(h, name, to) { h[name] = to; return h; },
    numbers(h) {
        const corner = (lat, lon) => ({ lat: lat.lat, lon: lon.lon });
        return { points: [h.First, corner(h.First, h.Last), h.Last, corner(h.Last, h.First)] };
    }
};
const list = {
    points: ["0", "3", "2", "1"],
    draw() {
        const h = [[-100, 60], [-20, -80], [90, -60], [110, 70]].map(place => drag(place, place).from);
        return Object.assign({}, h);
    },
    dragged(h, name, to) { h[name] = to; return h; },
    numbers(h) { return { points: [h[0], h[1], h[2], h[3]] }; }
};
const label = {
    points: ["Position"],
    draw() { return { Position: drag([0, 0], [60, -20]).to }; },
    dragged(h, name, to) { h[name] = to; return h; },
    numbers(h) { return { points: [h.Position] }; }
};
const kinds = {
    "Text": label, "Line": list, "Polygon": list, "Rectangle": corners, "Circle": circle, "Ellipse": twoRadii,
    "Cylinder": twoRadii, "Hemisphere": circle, "Ellipsoid": twoRadii, "Cone": circle
};

/// Holds what is shown against the numbers meant, in metres.
function verify(kind, h, tolerance, what) {
    const shown = shownBlocks();
    const expected = kind.numbers(h);
    const sure = tolerance + 1e-3;
    const samePlace = (actual, place, where) => assertNear(distance(placeOf(actual), place), 0, sure, what + ", " + where);
    assertEqual(shown.length, 1, what + ": one shape is shown");
    const lines = shown[0].lines;
    for (const key in expected) {
        const value = expected[key];
        if (key === "points") {
            assertEqual(lines.lla.length, value.length, what + ", points");
            value.forEach((point, i) => samePlace(lines.lla[i], point, "point " + i));
        } else if (key === "center") {
            samePlace(lines.centerlla[0], value, "centre");
        } else {
            assert(lines[key], what + ": " + key + " is missing in\n" + JSON.stringify(lines));
            assertNear(lines[key][0][0], value, key.endsWith("axis") ? 2 * sure : sure, what + ", " + key);
        }
    }
}

function draw(name, place, labels = Object.keys(kinds)) {
    menu("Plug-ins", "Overlay Editor...");
    // Out of the way, as far as the screen allows.
    editor.moveTo(820, 20);
    middle = { x: Math.round(view.size.width / 2), y: Math.round(view.size.height / 2) };
    for (const label of labels) {
        const kind = kinds[label];
        const what = name + ", " + label;
        view.camera = { lat: place.lat, lon: place.lon, alt: 0, range: place.range, azimuth: 0, elevation: 90 };
        editor.choose("Shape:", label);
        pixel = distance(view.place(middle.x, middle.y), view.place(middle.x + 1, middle.y));
        let h = kind.draw();
        verify(kind, h, 0, what + " drawn");
        if (pictures) view.picture(`${pictures}/${name}-${label}.png`.replace(/ /g, "-"));

        // Beside the point's middle: it keeps its distance from the cursor, and does not jump.
        for (const point of kind.points) {
            const from = view.pixel(h[point].lat, h[point].lon);
            const press = { x: Math.round(from.x) + 3, y: Math.round(from.y) - 2 };
            const [dx, dy] = point === "Center" || point === "First" || point === "0" ? [-30, 25] : [20, 15];
            const to = view.place(from.x + dx, from.y + dy);
            view.move(at(away));
            view.move(press);
            view.press(press);
            view.move({ x: press.x + 1, y: press.y });
            view.move({ x: press.x + dx, y: press.y + dy });
            view.release({ x: press.x + dx, y: press.y + dy });
            h = kind.dragged(h, point, to);
            verify(kind, h, 1.5 * pixel, what + ", " + point + " dragged");
        }
        view.click(at(away), { button: "right" });
        waitFor(() => editor.checked("Stop"), "the end of drawing");
        assertEqual(shownBlocks().length, 1, what + " stays");
        assertNear(distance(view.camera, place), 0, 1e-3, what + ": the globe has not turned");
        editor.press("Delete All");
        assertEqual(shownBlocks().length, 0, what + " is gone");
    }
}
