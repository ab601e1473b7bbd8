// Opens the probe's dialog, and passes it commands.
var probe = dialog("Probe");

function open() {
    menu("Plug-ins", "Probe & Gallery...");
    assert(probe.shown, "the probe's dialog is shown");
}

/// Gives the probe a command and returns its answer.
function command(text) {
    probe.fill("Command:", text);
    return probe.value("Answer:");
}

/// The probe's log lines since the last call.
var seen = log().length;
function said() {
    const entries = log().slice(seen).filter(entry => entry.source === "probe").map(entry => entry.text);
    seen = log().length;
    return entries;
}
