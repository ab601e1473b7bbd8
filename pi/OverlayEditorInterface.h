#pragma once

#include <cstdint>
#include <functional>
#include <vector>

/// What OverlayEditor publishes to other plug-ins, found with PICommon::Service::find. All on the host's
/// user-interface thread, while OverlayEditor is started.
namespace PluginClient::Interfaces {

inline constexpr const char* OVERLAYEDITOR_SERVICE_NAME = "org.overlayeditor/HALVIS/OverlayEditor/1.0";

class OverlayEditorInterface {
  public:
    /// Called after the editor has saved an overlay file and the host has loaded it. \param overlays the
    /// host's handles of it, one
    using NewZelFunction = std::function<void(const std::vector<void*>& overlays)>;

    /// \return an id above 0 that is never handed out again. Remove the function before its plug-in closes.
    virtual std::uint64_t registerNewZelFunction(NewZelFunction function) = 0;
    /// An unknown id is ignored.
    virtual void removeNewZelFunction(std::uint64_t id) = 0;
    /// Calls every registered function, in the order of their ids.
    virtual void executeFunctions(void* overlay) = 0;

  protected:
    ~OverlayEditorInterface() = default;
};

}  // namespace PluginClient::Interfaces
