// SPDX-FileCopyrightText: 2026 the OverlayEditor authors
// SPDX-License-Identifier: MIT

#include "sandbox/OverlayNotes.h"

#include <set>

#include "format/ZelShapes.h"
#include "sandbox/view/PictureFile.h"

namespace sandbox {

namespace {

/// The file that a shape is or bears, or "".
std::string pictureOf(const halCore::ZEL::ZelShape& shape) {
    std::string picture;
    if (const auto* overlay = dynamic_cast<const halCore::ZEL::ImageOverlay*>(&shape))
        picture = overlay->imageFile();
    else if (const auto* annotation = dynamic_cast<const halCore::ZEL::Annotation*>(&shape))
        annotation->getIconFile(picture);
    return picture;
}

}  // namespace

std::vector<OverlayNote> notesOn(const OverlayScene::Shapes& shapes, const std::string& directory) {
    std::vector<OverlayNote> notes;
    std::set<std::string> datums;
    std::set<std::string> pictures;
    for (std::size_t i = 0; i < shapes.size(); ++i) {
        if (!shapes[i]) continue;
        std::string datum;
        if (shapes[i]->getVerticalDatum(datum) == 0 && datum != "wgs84" && datums.insert(datum).second)
            notes.push_back({i, false, "heights above " + datum + " are shown above wgs84"});
        const std::string picture = pictureOf(*shapes[i]);
        if (!picture.empty() && pictures.insert(picture).second &&
            !canReadPicture(findPicture(picture, directory)))
            notes.push_back({i, true, "picture " + picture + " cannot be read"});
    }
    return notes;
}

}  // namespace sandbox
