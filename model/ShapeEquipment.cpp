#include "model/ShapeEquipment.h"

namespace OverlayEditor {
namespace {

ShapeEquipment* current = nullptr;

}  // namespace

void ShapeEquipment::install(ShapeEquipment* equipment) {
    current = equipment;
}

ShapeEquipment* ShapeEquipment::installed() {
    return current;
}

}  // namespace OverlayEditor
