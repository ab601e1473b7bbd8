// Platforms, the clock, and the events that tell of them.
include("lib/probe.js");
open();
const known = () => ask(220).integers;
assertEqual([known(), ask(200).result, ask(252).integers, ask(207).integers], [[], 1, [0], [2026]]);

said();
const ship = addPlatform({ name: "Ship", icon: "x2", lat: 10, lon: 20, alt: 5, heading: 90 });
assertEqual(said(), [`event 5 id ${ship}`]);
assertEqual(known(), [ship]);
assertEqual(command("header " + ship), `${ship} Ship x2`);
const radians = Math.PI / 180;
const point = () => command(`point ${ship} ${time()}`).split(" ").map(Number);
assertNear(point()[0], 10 * radians, 1e-15);
assertNear(point()[3], 90 * radians, 1e-15);
movePlatform(ship, { lat: -10 });
assertNear(point()[0], -10 * radians, 1e-15);
assertNear(point()[1], 20 * radians, 1e-15);

// A platform with a speed follows its geodesic as time passes.
movePlatform(ship, { lat: 0, lon: 0, speed: 100 });
said();
setTime(time() + 1000);
assertEqual(said(), ["event 1"]);
const after = destination(0, 0, 90, 100000);
assertNear(point()[1] / radians, after.lon, 1e-12);
assertEqual([ask(246, "i0").reals, ask(246, "i1").reals], [[0], [1000]]);
assertEqual(command(`point ${ship} 10`).split(" ").length, 4);

// The mouse finds what it points at.
view.camera = { lat: 0, lon: after.lon, range: 1e6 };
view.move(0, after.lon);
const atCursor = () => ask(424, "i2").integers;
assertEqual(atCursor(), [ship]);
view.move(1, after.lon);
assertEqual(atCursor(), [0]);

// The plug-in makes one and removes it.
const point2 = command("create Mark 0.5 0.25");
assertEqual(platforms().map(p => [p.id, p.name, p.icon]), [[ship, "Ship", "x2"], [Number(point2), "Mark", "x2"]]);
assertNear(platforms()[1].lat, 0.5 / radians, 1e-12);
said();
assertEqual(ask(253, "i" + point2).result, 1);
assertEqual(said(), [`event 4 id ${point2}`]);
assertEqual(command("header " + point2), "unknown");
assertEqual(command(`point ${point2} 0`), "unknown");

for (const [why, code] of [["cleared", 2], ["replaced", 3], ["closed", 16]]) {
    const id = addPlatform({ name: why });
    said();
    clearScenario(why);
    assert(said().includes("event " + code), why);
    assertEqual(platforms(), []);
}
addPlatform({ name: "Last" });
said();
menu("Scenario", "Clear Scenario");
assert(said().includes("event 2"), "the menu clears the scenario");
