// Opens the probe's dialog, and passes it commands.
var probe = dialog("Probe");

function open() {
    menu("Plug-ins", "Probe & Gallery...");
    assert(probe.shown, "the probe's dialog is shown");
}

/// Gives the probe a command as it is, and returns its answer.
function raw(...words) {
    probe.fill("Command:", words.join(" "));
    return probe.value("Answer:");
}
/// A call with a catch-all record, its arguments as words, or with another kind of record: see the probe's Commands.cpp.
function ask(...words) { return JSON.parse(raw("ask", ...words)); }
function call(...words) { return JSON.parse(raw("call", ...words)); }

const done = outcome => outcome.pointers[0] && outcome.pointers[0] !== "#0";
const loaded = outcome => done(outcome) ? "loaded" : "not loaded";
const askFile = selector => ask(163, selector, "sChoose", "sPROBE", "sLast", "s", "SOverlays|*.zel_*.ll", "SAll|*").texts[0] || "cancelled";
/// The calls that the scripts make, by name and arguments.
const verbs = {
    "set-text": (widget, ...text) => call(154, "text", widget, text.join("_")),
    "set-int": (widget, value) => call(152, "int", widget, value),
    "set-real": (widget, value) => call(153, "real", widget, value),
    "check": (widget, on) => call(145, "bool", widget, on),
    "show": (widget, on) => call(143, "bool", widget, on),
    "enable": (widget, on) => call(144, "bool", widget, on),
    "shown": widget => call(148, "bare", widget).result,
    "int": widget => ask(908, "i1", "p" + widget).integers,
    "real": widget => ask(908, "i2", "p" + widget).reals,
    "option": (menu, index) => call(159, "option", menu, index).text,
    "page": index => ask(141, "i" + index, "pswitcher", "p#0"),
    // List.
    "append": (data, ...text) => ask(909, "i0", "plist", "p#" + data, "S" + text.join("_")).integers,
    "add-header": text => ask(909, "i1", "plist", "S" + text),
    "remove": index => ask(909, "i2", "i" + index, "plist"),
    "clear": () => ask(909, "i3", "plist"),
    "count": () => ask(909, "i4", "plist").integers,
    "selected": () => ask(909, "i5", "plist").integers,
    "select": index => ask(909, "i6", "i" + index, "plist"),
    "deselect": () => ask(909, "i7", "plist"),
    "item": index => ask(909, "i8", "i" + index, "plist").texts[0],
    "rename": (index, text) => ask(909, "i9", "i" + index, "plist", "S" + text),
    "data": index => ask(909, "i10", "i" + index, "plist").pointers[0].slice(1),
    // Application.
    "store": (key, ...value) => call(101, "texts", "#0", key, value.join("_")),
    "read": key => call(102, "text", "#0", key).text,
    "ask-load": () => askFile("i0"),
    "ask-save": () => askFile("i1"),
    "ask-directory": () => askFile("i2"),
    "timeout": (name, delay) => ask(317, "i0", "i" + delay, "cfired:" + name, "pgallery", ">" + name),
    "cancel": name => ask(317, "i1", "p" + name),
    "action": label => ask(319, "i0", "sProbe", "S" + label, "casked:" + label, ">action"),
    "publish": name => ask(322, "i0", "s" + name, "pgallery").result,
    "withdraw": name => ask(322, "i1", "s" + name, "pgallery").result,
    "find-service": name => ask(322, "i2", "s" + name).pointers[0] || "none",
    // Scene.
    "look": (lat, lon, ...rae) => { ask(418, "i1", "d" + lat, "d" + lon, "d0"); ask(418, "i2", ...rae.map(value => "d" + value)); },
    "at-cursor": () => ask(424, "i1", "i1"),
    "at-pixel": (x, y) => ask(424, "i0", "i" + x, "i" + y, "i1"),
    "grab": () => ask(155, "i0"),
    "redraw": () => call(910, "null"),
    "screen-text": (across, down, text) => ask(432, "i0", "SScreenText^Enabled_FLOAT64_1.0^Text_STRING_" + text +
        "^Font_STRING_arial.ttf_14^PosX_FLOAT64_20^PosY_FLOAT64_30^TextColor_STRING_0xff00ffff^HAlign_STRING_" + across +
        "^VAlign_STRING_" + down + "^", ">screen"),
    "no-screen-text": () => ask(432, "i1", "pscreen"),
    // Overlays.
    "load": (name, path, platform, shown) => loaded(ask(428, "i0", "i" + platform, "i" + shown, "s" + path, ">" + name)),
    "stream": (name, lat, lon) =>
        loaded(ask(428, "i1", "i0", `tstart^circle^centerll_${lat}_${lon}^radius_1000^rangeunits_m^end^`, ">" + name)),
    "unload": name => ask(428, "i2", "p" + name),
    "show-overlay": (name, on) => ask(428, "i3", "i" + on, "p" + name),
    "find": path => ask(428, "i4", "s" + path).pointers[0] || "none",
    "file-name": name => ask(428, "i5", "p" + name).texts[0],
    "host-of": name => ask(428, "i6", "p" + name).integers,
    "text-of": name => ask(428, "i7", "p" + name, "o").texts[0].split("\n")[0],
    "observe": () => ask(428, "i8", "pobserver"),
    "unobserve": () => ask(428, "i9", "pobserver"),
    "unattached": () => ask(439, "i0").pointers.length,
    "attached": platform => ask(439, "i1", "i" + platform).pointers.length,
    "menus": () => ask(440, "i0", "pmenus"),
    "no-menus": () => ask(440, "i1", "pmenus")
};
/// One of them, or one of the probe's own commands.
function command(text) {
    const [verb, ...words] = text.split(" ");
    if (!verbs[verb]) return raw(text);
    const answer = verbs[verb](...words);
    return answer === undefined || answer.result !== undefined ? "done" : String(answer);
}

/// The probe's log lines since the last call.
var seen = log().length;
function said() {
    const entries = log().slice(seen).filter(entry => entry.source === "probe").map(entry => entry.text);
    seen = log().length;
    return entries;
}
