#pragma once

#include "pi/PIServiceTable.h"

namespace OverlayEditor {

/// A service table for users of the model without a host: settings are empty, nothing is shown, nothing is
/// printed, nothing fails. It is in force while the object lives, unless there is a host.
class QuietServiceTable final : public PIServiceTable {
  public:
    QuietServiceTable();
    ~QuietServiceTable();
    QuietServiceTable(const QuietServiceTable&) = delete;
    QuietServiceTable& operator=(const QuietServiceTable&) = delete;

    std::int32_t hostBuildNumber() override;
    PIServiceResult handle(void*, PIServerFunctions_t, void*) override { return 0; }
};

}  // namespace OverlayEditor
