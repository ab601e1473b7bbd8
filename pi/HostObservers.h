#pragma once

#include <string>
#include <vector>

class PIObject;

/// Interfaces through which host and plug-in call each other back. Who implements one owns the object;
/// the other side holds a plain pointer until it is told to forget it.
namespace PIApp {

/// What the host offers in the CommandLineArguments slot of StartUp. The host's; valid during the call.
class CommandLineArgumentsProvider {
  public:
    virtual std::vector<std::string> arguments() const = 0;

  protected:
    ~CommandLineArgumentsProvider() = default;
};

/// What a host of its kind hands to ConfigureCommandLine. The host's; this contract says nothing of it, and
/// plug-ins of this contract leave it alone.
class CommandLineConfiguration;

}  // namespace PIApp

namespace PIGUI {

/// Told when the user closes a dialog with the window manager. The plug-in's.
class PICloseObserver {
  public:
    virtual ~PICloseObserver() = default;
    /// The box is hidden when this returns; it still exists.
    virtual void onClose(PIObject* dialogBox) = 0;
};

}  // namespace PIGUI

namespace PIHALVIS {

/// Told about overlay files, from within the call that changes them. The plug-in's.
class ZELEventObserver {
  public:
    virtual ~ZELEventObserver() = default;
    virtual void addedZEL(void* overlay) = 0;
    virtual void removedZEL(void* overlay) = 0;
};

/// Name of the host's overlay list in context menus.
inline constexpr const char* CLICKED_GUI_ZEL_LIST_NAME = "ZelList";

/// What was right-clicked. The host's; valid during menuRequested.
class ContextMenuData {
  public:
    virtual ~ContextMenuData() = default;
};
/// Overlay files of the host.
class ZelMenuData : public ContextMenuData {
  public:
    std::vector<void*> overlays;
};

/// Asked before a context menu opens. The plug-in's.
class ContextMenuCallbackV3 {
  public:
    virtual ~ContextMenuCallbackV3() = default;
    /// \param data may be null
    /// \param menu to be given to addContextMenuItem; valid during the call
    virtual void menuRequested(const std::string& listName, const ContextMenuData* data, void* menu) = 0;
};

}  // namespace PIHALVIS
