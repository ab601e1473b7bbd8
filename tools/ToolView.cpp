#include "tools/ToolView.h"

#include "tools/OpenGlView.h"

namespace OverlayEditor {

namespace {

ToolView* g_installed = nullptr;

OpenGlView& hostView() {
    static OpenGlView view;
    return view;
}

}  // namespace

ToolView& ToolView::current() {
    return g_installed ? *g_installed : hostView();
}

void ToolView::install(ToolView* view) {
    g_installed = view;
}

void releaseGraphics() {
    hostView().releaseGraphics();
}

}  // namespace OverlayEditor
