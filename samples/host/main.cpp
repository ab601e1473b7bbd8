// A whole host: loads the editor, draws a circle with the mouse, saves it, prints the file, and lets the
// editor go.
//
//     example-host OverlayEditor.so FILE.zel [NUMBER OF A SERVICE TO REFUSE]...
#include <fstream>
#include <iostream>
#include <string>

#include "Host.h"
#include "Plugin.h"

namespace {

using Mouse = PIGUI::PIMouseEventType_t;

void drawAndSave(Host& host, Plugin& plugin) {
    host.press("Overlay Editor...");
    host.choose("Shape:", "Circle");

    // Press at the centre, drag, release on the edge; a right click ends drawing. The mouse comes to a place
    // before it is pressed there.
    plugin.mouse(Mouse::Motion, 500, 200);
    plugin.mouse(Mouse::LeftPress, 500, 200);
    plugin.mouse(Mouse::Motion, 550, 200);
    plugin.mouse(Mouse::LeftRelease, 550, 200);
    plugin.mouse(Mouse::RightPress, 550, 200);

    if (host.overlays.empty()) throw std::runtime_error("nothing was drawn");
    host.press("Save As...");
}

}  // namespace

int main(int count, char** arguments) try {
    if (count < 3) throw std::runtime_error("usage: example-host OverlayEditor.so FILE.zel [SERVICE]...");
    Host host;  // before the plug-in, so that it outlives it
    host.saveAs = arguments[2];
    for (int i = 3; i < count; ++i) host.refused.insert(Host::Service{std::stoi(arguments[i])});

    Plugin plugin(arguments[1], host.hostBuildNumber());
    plugin.start(host);
    drawAndSave(host, plugin);
    plugin.close();
    if (host.leftovers() != 0) throw std::runtime_error("the plug-in left widgets behind");
    plugin.unload();

    // What the plug-in showed while it worked is gone. Overlay files are the host's, and stay.
    if (host.overlays.empty()) throw std::runtime_error("nothing was saved");
    for (const auto& [handle, text] : host.overlays) std::cout << text;
    return 0;
} catch (const std::exception& error) {
    std::cerr << "example-host: " << error.what() << '\n';
    return 1;
}
