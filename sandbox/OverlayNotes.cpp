#include "sandbox/OverlayNotes.h"

#include <set>

#include "format/ZelShapes.h"

namespace sandbox {

std::vector<std::string> notesOn(const OverlayScene::Shapes& shapes) {
    namespace ZEL = halCore::ZEL;
    std::vector<std::string> notes;
    std::set<std::string> datums;
    std::set<std::string> pictures;
    for (const auto& shape : shapes) {
        if (!shape) continue;
        std::string datum;
        if (shape->getVerticalDatum(datum) == 0 && datum != "wgs84") datums.insert(datum);
        std::string picture;
        if (const auto* overlay = dynamic_cast<const ZEL::ImageOverlay*>(shape.get()))
            picture = overlay->imageFile();
        else if (const auto* annotation = dynamic_cast<const ZEL::Annotation*>(shape.get()))
            annotation->getIconFile(picture);
        if (!picture.empty()) pictures.insert(picture);
    }
    for (const std::string& datum : datums)
        notes.push_back("heights above " + datum + " are shown above wgs84");
    for (const std::string& picture : pictures) notes.push_back("picture " + picture + " is not drawn");
    return notes;
}

}  // namespace sandbox
