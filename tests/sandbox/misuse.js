// Every way to break the contract is reported by name, and does no harm.
include("lib/probe.js");
open();
const gone = create => [create("#0", "outer"), create("outer", "inner"), "call 100 pointer outer #0", "call 154 text inner Still"];
const cases = [
    ["call 152 bool text 1", "Probe: service 152 (set integer): wrong record"],
    ["call 152 null", "Probe: service 152 (set integer): wrong record"],
    ["call 152 bare text", "Probe: service 152 (set integer): wrong record"],
    ["call 148 bool text 1", "Probe: service 148 (shown): unknown handle instead of a widget"],
    ["call 152 int gallery 1", "Probe: service 152 (set integer): unknown handle instead of a widget"],
    ["call 152 int #0 1", "Probe: service 152 (set integer): null handle instead of a widget"],
    [["call 100 pointer left #0", "call 145 bool left 1"], "Probe: service 145 (check): handle of a widget that is gone"],
    ["ask 909 i4 ptext", "Probe: service 909 (item count): text field is no list"],
    ["call 777 int text 1", "Probe: service 777: unknown service"],
    ["ask 317 i55", "Probe: service 317: unknown selector 55"],
    ["ask 317", "Probe: service 317: no selector"],
    ["ask 418 i1 d0.1 d0.2", "Probe: service 418 (camera centre): wrong number of arguments"],
    ["ask 418 i1 d0.1 dinf d0", "Probe: service 418 (camera centre): not a finite number"],
    ["create Mark 7 0", "Probe: service 248 (create platform): not a place on the earth"],
    ["point 0 nan", "Probe: service 256 (data point): not a finite number"],
    [["ask 428 i8 pobserver", "ask 428 i8 pobserver", "ask 428 i9 pobserver"],
     "Probe: service 428 (register overlay observer): registered already"],
    ["call 114 text menu-item Nowhere", 'Probe: service 114 (dialog): menu item "Probe & Gallery..." stands in no window'],
    [gone((parent, name) => `call 114 text ${parent} Box >${name}`), "Probe: service 154 (set text): handle of a widget that is gone"],
    [gone((parent, name) => `call 105 item ${parent} Item >${name}`), "Probe: service 154 (set text): handle of a widget that is gone"],
    ["as-other call 152 int text 1", "unknown plug-in: service 152: unknown identity"],
    ["ask 16 i2 p#0", "plug-in: service 16 (identity): popped without a push"],
    ["call 152 int fruit 3", "Probe: service 152 (set integer): option menu takes no such value as 3"],
    ["ask 909 i8 i7 plist", "Probe: service 909 (item text): the list has no item 7"],
    ["ask 155 i1", "Probe: service 155 (ungrab mouse): ungrabbed without a grab"],
    ["ask 253 i4711", "Probe: service 253 (remove platform): unknown platform 4711"],
    ["ask 432 i0 SScreenText^PosX_FLOAT64_much^", 'Probe: service 432 (add screen text): line not understood: "PosX FLOAT64 much"'],
    ["ask 325 i0 i12 sprobe sloud", "Probe: service 325 (notify): unknown severity 12"],
    ["on-thread call 152 int text 1", "plug-in: service 152: called on another thread than the host's"]
];
for (const [lines, message] of cases) {
    assertEqual(misuses(() => [].concat(lines).forEach(line => raw(line))), [message], String(lines));
    assert(log().some(entry => entry.severity === 2 && entry.text.includes(message.split(": ").pop())), message);
}
assertEqual(command("count"), "0", "the probe still works");
