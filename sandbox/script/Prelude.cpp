#include "sandbox/script/Prelude.h"

namespace sandbox {

const char* const kPrelude = R"js(
"use strict";

function show_(value) { return typeof value === "string" ? '"' + value + '"' : JSON.stringify(value); }
// The arguments (lat, lon, options) or (place, options) of the view's functions.
function place_(a) { return typeof a[0] === "number" ? { lat: a[0], lon: a[1] } : a[0] || {}; }
function options_(a) { return (typeof a[0] === "number" ? a[2] : a[1]) || {}; }

// Checks
function fail(message) { throw new Error(message); }
function assert(condition, message) { if (!condition) fail(message || "assertion failed"); }
function assertEqual(actual, expected, message) {
    if (JSON.stringify(actual) !== JSON.stringify(expected))
        fail((message ? message + ": " : "") + "got " + show_(actual) + ", expected " + show_(expected));
}
function assertNear(actual, expected, tolerance, message) {
    if (!(Math.abs(actual - expected) <= tolerance))
        fail((message ? message + ": " : "") + "got " + actual + ", expected " + expected + " within " + tolerance);
}
function assertThrows(action, pattern) {
    try { action(); } catch (error) {
        if (pattern && !String(error.message).match(pattern))
            fail("threw \"" + error.message + "\", expected " + pattern);
        return error.message;
    }
    fail("nothing was thrown");
}
function misuses(action) {
    $scene.expectMisuse();
    try { action(); } finally { var found = $scene.takeMisuses(); }
    return found;
}

// Time
function wait(milliseconds) { $tools.wait(milliseconds); }
function waitFor(condition, message, timeout) {
    const end = Date.now() + (timeout || 5000);
    for (;;) {
        const result = condition();
        if (result) return result;
        if (Date.now() > end) fail("waited in vain" + (message ? ": " + message : ""));
        $tools.wait(10);
    }
}

/// How long the window's thread was kept from its events at most since the last call, which begins to watch: by the
/// clock and at work, in milliseconds.
function longestTurn() { return $tools.longestTurn(); }

/// A key of the keyboard, such as "Ctrl+Z", as it comes to the window that is in front.
function pressKey(key) { $tools.pressKey(key); }

// Output, environment, files
function print(...values) { $tools.print(values.map(v => typeof v === "string" ? v : show_(v)).join(" ")); }
var args = $tools.arguments();
var scriptDirectory = $tools.scriptDirectory();
function environment(name) { return $tools.environment(name); }
function include(path) { $tools.include(path); }
function readFile(path) { return $tools.readFile(path); }
function writeFile(path, text) { $tools.writeFile(path, text); }
function removeFile(path) { $tools.removeFile(path); }
function fileExists(path) { return $tools.fileExists(path); }
function listFiles(directory) { return $tools.listFiles(directory); }
function makeDirectory(path) { $tools.makeDirectory(path); }
function setWritable(path, writable) { $tools.setWritable(path, writable); }
function temporaryDirectory() { return $tools.temporaryDirectory(); }
function answerFileDialog(path, options) {
    $tools.answerFileDialog(path || "", !options || options.overwrite !== false);
}

// Geodesics
function geodesic(lat1, lon1, lat2, lon2) { return $tools.geodesic(lat1, lon1, lat2, lon2); }
function distance(a, b) { return $tools.geodesic(a.lat, a.lon, b.lat, b.lon).distance; }
function destination(lat, lon, azimuth, meters) { return $tools.destination(lat, lon, azimuth, meters); }

// Menus and dialogs
function menu(...path) { $widgets.menu(path); }
function menuPicture(name, file) { $widgets.menuPicture(name, file); }
function menuItems(name) { return $widgets.menuItems(name); }
function dialogs() { return $widgets.dialogs(); }
var Dialog = class {
    constructor(title) { this.title = title; }
    get shown() { return $widgets.dialogs().includes(this.title); }
    close() { $widgets.closeDialog(this.title); }
    moveTo(x, y) { $widgets.moveDialog(this.title, x, y); }
    get geometry() { return $widgets.geometry(this.title); }
    captions() { return $widgets.captions(this.title); }
    press(path) { $widgets.press(this.title, path); }
    check(path, checked) { $widgets.setChecked(this.title, path, checked !== false); }
    uncheck(path) { $widgets.setChecked(this.title, path, false); }
    fill(path, text) { $widgets.fill(this.title, path, String(text), true); }
    type(path, text) { $widgets.fill(this.title, path, String(text), false); }
    key(path, key) { $widgets.key(this.title, path, key); }
    leave(path) { $widgets.leave(this.title, path); }
    choose(path, option) { $widgets.choose(this.title, path, option); }
    color(path, rgba) { $widgets.color(this.title, path, rgba); }
    select(path, item, options) { $widgets.select(this.title, path || "", item, !!(options && options.add), !!(options && options.enter)); }
    place(path) { return $widgets.place(this.title, path); }
    has(path) { return $widgets.isShown(this.title, path); }
    enabled(path) { return $widgets.isEnabled(this.title, path); }
    focused(path) { return $widgets.hasFocus(this.title, path); }
    checked(path) { return $widgets.isChecked(this.title, path); }
    value(path) { return $widgets.value(this.title, path); }
    number(path) { return Number($widgets.value(this.title, path)); }
    tooltip(path) { return $widgets.tooltip(this.title, path); }
    options(path) { return $widgets.options(this.title, path); }
    items(path) { return $widgets.items(this.title, path || ""); }
    selected(path) { return $widgets.selected(this.title, path || ""); }
    picture(file, group) { $tools.picture(this.title, file, group || ""); }
};
function dialog(title) { return new Dialog(title); }
/// All the dialogs that are shown.
var anyDialog = new Dialog("");

// The view
var view = {
    press(...a) { return $view.mouse("press", place_(a), options_(a)); },
    release(...a) { return $view.mouse("release", place_(a), options_(a)); },
    move(...a) { return $view.mouse("move", place_(a), options_(a)); },
    click(...a) { const at = view.press(...a); return view.release({ x: at.x, y: at.y }, options_(a)); },
    doubleClick(...a) {
        const at = view.click(...a);
        const pixel = { x: at.x, y: at.y };
        $view.mouse("doubleClick", pixel, options_(a));
        return view.release(pixel, options_(a));
    },
    wheel(...a) {
        const o = options_(a);
        return $view.mouse("wheel", place_(a), typeof o === "number" ? { notches: o } : o);
    },
    /// Presses at one place and releases at another, with moves between. Returns { from, to }.
    drag(from, to, options) {
        const o = options || {};
        const steps = o.steps || 5;
        const start = view.press(from, o);
        const end = "x" in to ? to : $view.pixel(to.lat, to.lon);
        for (let i = 1; i <= steps; ++i)
            view.move({ x: Math.round(start.x + (end.x - start.x) * i / steps),
                        y: Math.round(start.y + (end.y - start.y) * i / steps) }, o);
        return { from: start, to: view.release({ x: Math.round(end.x), y: Math.round(end.y) }, o) };
    },
    leave() { $view.leave(); },
    pixel(lat, lon) { return $view.pixel(lat, lon); },
    place(x, y) { return $view.place(x, y); },
    colorAt(x, y) { return $view.colorAt(x, y); },
    cursor() { return $view.cursor(); },
    get camera() { return $view.camera(); },
    set camera(values) { $view.setCamera(values); },
    get size() { return $view.size(); },
    get frameCount() { return $view.frameCount(); },
    picture(file) { $tools.picture("view", file, ""); }
};
function picture(file) { $tools.picture("window", file, ""); }
function status() { return $scene.status(); }

// Scenario, overlays, log, settings, plug-ins
function addPlatform(values) { return $scene.addPlatform(values); }
function movePlatform(id, values) { $scene.movePlatform(id, values); }
function removePlatform(id) { $scene.removePlatform(id); }
function platforms() { return $scene.platforms(); }
function clearScenario(why) { $scene.clearScenario(why || "cleared"); }
function time() { return $scene.time(); }
function setTime(seconds) { $scene.setTime(seconds); }
function overlays() { return $scene.overlays(); }
function overlay(name) { return $scene.overlays().find(o => o.name === name || o.path === name); }
function openOverlay(path, platform) { return $scene.openOverlay(path, platform || 0); }
function overlayMenu(names, ...path) { $widgets.overlayMenu([].concat(names), path); }
function tickOverlay(name, shown) { $widgets.tickOverlay(name, shown); }
function selectedShape() { return $widgets.selectedShape(); }
function screenTexts() { return $scene.screenTexts(); }
function log() { return $scene.log(); }
function setting(key) { return $scene.setting(key); }
function setSetting(key, value) { $scene.setSetting(key, value); }
function keepSession() { $scene.keepSession(); }
function restoreSession() { $scene.restoreSession(); }
function settingsFile() { return $scene.settingsFile(); }
function plugins() { return $scene.plugins(); }
function openPlugin(path) { return $scene.openPlugin(path); }
function closePlugin(name) { return $scene.closePlugin(name); }
)js";

}  // namespace sandbox
