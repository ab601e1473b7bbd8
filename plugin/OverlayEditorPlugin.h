#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "common/Notify.h"
#include "gui/NextPointDialog.h"
#include "gui/OverlayEditorDialog.h"
#include "gui/ShapePanelMaker.h"
#include "model/LostWatch.h"
#include "model/Overlay.h"
#include "model/Preferences.h"
#include "model/ShapeRegistry.h"
#include "pi/PIApplication.h"
#include "pi/PICommon.h"
#include "pi/PIWidgets.h"
#include "plugin/OverlayEditorInterface.h"
#include "tools/MouseManager.h"
#include "tools/MouseToolMaker.h"
#include "tools/OverlaySnap.h"
#include "tools/QuickDrawManager.h"
#include "tools/ScreenNote.h"

namespace OverlayEditor {

/// The one plug-in object: made by HPI_InitializeFunctionMap, destroyed by the host's Close. It owns
/// everything that lives as long as the plug-in is started.
class OverlayEditorPlugin final : public PIApp::PIApplication_v1_24 {
  public:
    OverlayEditorPlugin();
    /// Takes down what Close would have, when it was never called.
    ~OverlayEditorPlugin() override;

    // The forms of StartUp that bring a command line end here; the editor reads none.
    using PIApp::PIApplication_v1_24::StartUp;
    /// All of it or nothing: what was made is taken down when something of it fails.
    /// \return 0, or kStatusFailed
    int StartUp() override;
    int Callback() override { return 0; }
    int Close() override;
    std::string Name() const override;
    std::string Description() const override;
    std::string Author() const override;
    std::string Version() const override;
    std::string URL() const override;
    std::string ContactInfo() const override;
    void listenToEvents(PIApplicationEvents_t event, void* data) override;
    void preDrawOnRefresh(int widthPixels, int heightPixels) override;
    int handleMouseEvent(PIGUI::PIMouseEventType_t type, const PIGUI::PIMouseEvent& event) override;
    void LoadInHALVIS() override {}
    void LoadInGrapher() override {}
    void LoadInScenarioEditor() override {}
    void LoadInHALVIS10() override {}

    /// Shows the editor dialog, which is made the first time.
    int onCmdShowSettings(PIObject* sender, void* data);
    // Handlers of the actions to which the host lets its users bind keys. They do nothing while the dialog is
    // not shown: what they change could not be seen.
    int onCmdUndo(PIObject* sender, void* data);
    int onCmdRedo(PIObject* sender, void* data);
    int onCmdFinish(PIObject* sender, void* data);
    int onCmdRemoveLastPoint(PIObject* sender, void* data);
    int onCmdDelete(PIObject* sender, void* data);
    int onCmdDuplicate(PIObject* sender, void* data);
    int onCmdCancel(PIObject* sender, void* data);
    /// The row for what the next click would do, alone; for the quick shape that is drawn, too.
    int onCmdTypeNextPoint(PIObject* sender, void* data);
    /// Takes the overlays that were right-clicked last into the editor.
    int onCmdLoadHalvisZels(PIObject* sender, void* data);

  private:
    class RightClickObserver;

    /// All that StartUp makes.
    void build_();
    /// What there is of it goes; nothing is left that the host could call.
    void takeDown_();
    void takeDownGuarded_() noexcept;
    int edit_(int (OverlayEditorDialog::*command)(PIObject*, void*));
    /// Everything that the editor has to say comes here: it goes into the host's log, and to where the eye
    /// is, the dialog's lower edge or, while the mouse draws or without a dialog, the view.
    void say_(halNotify::Severity severity, const std::string& message);

    bool startedUp_ = false;
    /// Of a start that has failed, after which nothing is there and nothing happens.
    int startUpStatus_ = 0;
    MouseToolMaker toolMaker_;
    ShapePanelMaker panelMaker_;
    std::unique_ptr<Preferences> preferences_;
    std::unique_ptr<PIGUI::PIIcon> icon_;
    std::unique_ptr<PIGUI::PIMenuItem> menuItem_;
    /// The dialog's, and those of editing.
    std::vector<std::unique_ptr<PICommon::Action>> actions_;
    std::unique_ptr<MouseManager> mouseManager_;
    /// What the next click does.
    std::unique_ptr<ScreenNote> hint_;
    /// What was said last, until the next press.
    std::unique_ptr<ScreenNote> said_;
    std::unique_ptr<ShapeRegistry> shapeRegistry_;
    std::unique_ptr<Overlay> overlay_;
    std::unique_ptr<OverlaySnap> snap_;
    std::unique_ptr<QuickDrawManager> quickDrawManager_;
    std::unique_ptr<RightClickObserver> rightClickObserver_;
    std::unique_ptr<OverlayEditorInterface> serviceInterface_;
    std::unique_ptr<PICommon::BasicService> service_;
    std::unique_ptr<OverlayEditorDialog> dialog_;
    std::unique_ptr<NextPointDialog> nextPoint_;
    std::unique_ptr<LostWatch> lostWatch_;
    CallbackList<OverlayEditorPlugin> callbacks_{this};
};

}  // namespace OverlayEditor
