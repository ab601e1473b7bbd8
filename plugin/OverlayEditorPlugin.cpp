#include "plugin/OverlayEditorPlugin.h"

namespace OverlayEditor {

std::string OverlayEditorPlugin::Name() const {
    return "OverlayEditor";
}

std::string OverlayEditorPlugin::Description() const {
    return "Overlay Editor Plug-in lets you create and edit shapes in 3-D in HALVIS.";
}

}  // namespace OverlayEditor
