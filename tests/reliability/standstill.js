// Opens a file by hand, moves the view and the clock, closes the file, and says how long each kept the window from its events.
function rest() {
    let frames;
    waitFor(() => { frames = view.frameCount; wait(500); return view.frameCount === frames; }, "a view at rest", 120000);
}
function turn(deed) {
    longestTurn();
    deed();
    rest();
    const longest = longestTurn();
    print("turn", longest.clock, longest.processor);
}
view.camera = { lat: 10, lon: 10, range: 1.6e7 };
rest();
// What is done for the first time takes longer.
menu("File", "Close All");
rest();
answerFileDialog(args[0]);
turn(() => menu("File", args[0].endsWith(".csv") ? "Open Platforms..." : "Open Overlay..."));
turn(() => view.camera = { lat: 20, lon: 30, range: 1.2e7 });
turn(() => setTime(time() + 90));
turn(() => menu("File", "Close All"));
