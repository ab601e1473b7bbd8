#pragma once

#include <map>

#include "pi/OverlayEditorInterface.h"

namespace OverlayEditor {

/// The published service: functions of other plug-ins, called for every overlay that the editor saves.
class OverlayEditorInterface final : public PluginClient::Interfaces::OverlayEditorInterface {
  public:
    std::uint64_t registerNewZelFunction(NewZelFunction function) override;
    void removeNewZelFunction(std::uint64_t id) override;
    /// A function may register and remove functions; one that throws is reported and the others follow.
    void executeFunctions(void* overlay) override;

  private:
    std::map<std::uint64_t, NewZelFunction> functions_;
    std::uint64_t lastId_ = 0;
};

}  // namespace OverlayEditor
