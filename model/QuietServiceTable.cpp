#include "model/QuietServiceTable.h"

#include "pi/PIBase.h"
#include "pi/PIDataRecords.h"

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

PIServiceResult QuietServiceTable::handle(void*, PIServerFunctions_t service, void* record) {
    if (service == PIServerFunctions_t::CreateEntity && record)
        static_cast<PI_DATA_CATCHALL*>(static_cast<PI_DATA_BASE_CLASS*>(record))
            ->integers.push_back(kPlatform);
    return 0;
}

}  // namespace OverlayEditor
