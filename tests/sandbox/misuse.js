// Every way to break the contract is reported by name, and does no harm.
include("lib/probe.js");
open();
const cases = {
    "wrong-record": "Probe: service 152 (set integer): wrong record",
    "null-record": "Probe: service 152 (set integer): wrong record",
    "bare-handle": "Probe: service 152 (set integer): wrong record",
    "record-for-handle": "Probe: service 148 (shown): unknown handle instead of a widget",
    "unknown-handle": "Probe: service 152 (set integer): unknown handle instead of a widget",
    "null-handle": "Probe: service 152 (set integer): null handle instead of a widget",
    "dead-handle": "Probe: service 145 (check): handle of a widget that is gone",
    "wrong-kind": "Probe: service 909 (item count): text field is no list",
    "unknown-service": "Probe: service 777: unknown service",
    "unknown-selector": "Probe: service 317: unknown selector 55",
    "no-selector": "Probe: service 317: no selector",
    "arguments": "Probe: service 418 (camera centre): wrong number of arguments",
    "not-finite": "Probe: service 418 (camera centre): not a finite number",
    "nowhere": "Probe: service 248 (create platform): not a place on the earth",
    "never": "Probe: service 256 (data point): not a finite number",
    "observer-twice": "Probe: service 428 (register overlay observer): registered already",
    "menu-as-window": 'Probe: service 114 (dialog): menu item "Probe & Gallery..." stands in no window',
    "dialog-gone": "Probe: service 154 (set text): handle of a widget that is gone",
    "item-gone": "Probe: service 154 (set text): handle of a widget that is gone",
    "identity": "unknown plug-in: service 152: unknown identity",
    "pop": "plug-in: service 16 (identity): popped without a push",
    "option": "Probe: service 152 (set integer): option menu takes no such value as 3",
    "item": "Probe: service 909 (item text): the list has no item 7",
    "ungrab": "Probe: service 155 (ungrab mouse): ungrabbed without a grab",
    "platform": "Probe: service 253 (remove platform): unknown platform 4711",
    "screen-text": 'Probe: service 432 (add screen text): line not understood: "PosX FLOAT64 much"',
    "severity": "Probe: service 325 (notify): unknown severity 12",
    "thread": "plug-in: service 152: called on another thread than the host's",
};
for (const name in cases) {
    assertEqual(misuses(() => command("misuse " + name)), [cases[name]], name);
    assert(log().some(entry => entry.severity === 2 && entry.text.includes(cases[name].split(": ").pop())), name);
}
assertEqual(command("count"), "0", "the probe still works");
