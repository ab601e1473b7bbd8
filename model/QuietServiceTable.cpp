#include "model/QuietServiceTable.h"

#include "pi/PIBase.h"

namespace OverlayEditor {

QuietServiceTable::QuietServiceTable() {
    if (!g_FunctionMap) g_FunctionMap = this;
}

QuietServiceTable::~QuietServiceTable() {
    if (g_FunctionMap == this) g_FunctionMap = nullptr;
}

std::int32_t QuietServiceTable::hostBuildNumber() {
    return PIBase::buildNumber;
}

}  // namespace OverlayEditor
