#include "format/OutlinedShape.h"

#include "format/OptionalField.h"
#include "format/TextWriter.h"

namespace halCore::ZEL {

int OutlinedShape::getOutlined(bool& out) const {
    return getField(outlined_, out, true);
}

void OutlinedShape::serializeOutline_(TextWriter& writer) const {
    if (outlined_) writer.text("outline ").trueFalse(*outlined_).endLine();
}

}  // namespace halCore::ZEL
