#pragma once

#include "pi/PIServiceTable.h"

namespace OverlayEditor {

/// A service table for users of the model without a host: settings are empty, nothing is shown, nothing is
/// printed, nothing fails, and a platform can be made. It is in force while the object lives, unless there is
/// a host.
class QuietServiceTable final : public PIServiceTable {
  public:
    QuietServiceTable();
    ~QuietServiceTable();
    QuietServiceTable(const QuietServiceTable&) = delete;
    QuietServiceTable& operator=(const QuietServiceTable&) = delete;

    std::int32_t hostBuildNumber() override;
    PIServiceResult handle(void*, PIServerFunctions_t service, void* record) override;

  private:
    /// What platforms are made of: none has a place, all have this id.
    static constexpr std::int64_t kPlatform = 1;
};

}  // namespace OverlayEditor
