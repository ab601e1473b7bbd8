#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "geo/PointConverter.h"
#include "geo/UnitTypes.h"
#include "gui/SelectExistingZELDialog.h"
#include "model/FileVersion.h"
#include "model/Overlay.h"
#include "model/Preferences.h"
#include "pi/OverlayEditorInterface.h"
#include "pi/PICommon.h"
#include "pi/PIWidgets.h"
#include "tools/MouseManager.h"

namespace OverlayEditor {

/// The one window of the editor: the overlay's shapes, adding and drawing them, the panel of the current
/// one, files, units. While it is shown the overlay is edited: the host's own display of the edited overlay
/// is hidden, and the editor's shapes are drawn in its place.
class OverlayEditorDialog {
  public:
    /// The dialog is made hidden. It owns none of its arguments; all must outlive it.
    /// \param prototypes what the "Shape:" menu offers, in its order
    OverlayEditorDialog(Preferences* preferences, MouseManager* mouseManager, Overlay* overlay,
                        std::vector<Shape*> prototypes);
    /// Ends editing; the overlay keeps its shapes. What is not saved is rescued.
    virtual ~OverlayEditorDialog();
    OverlayEditorDialog(const OverlayEditorDialog&) = delete;
    OverlayEditorDialog& operator=(const OverlayEditorDialog&) = delete;

    virtual void show();
    virtual void hide();
    void setIcon(const PIGUI::PIIcon& icon) { box_.setIcon(icon); }
    /// Told of every overlay that was saved; null for nobody.
    void setServiceInterface(PluginClient::Interfaces::OverlayEditorInterface* service) {
        service_ = service;
    }

    /// Gives up the shapes that are held and takes these, with their ownership.
    void setCurrentShapes(const std::vector<Shape*>& shapes);
    /// Takes overlays that the host has loaded into the editor, one after the other.
    void loadZels(const std::vector<void*>& overlays);

    void scenarioEntityRemoved(unsigned long id);
    void scenarioZELsChanged();
    void scenarioPlatformAdded();

    int onCmdCurrentShapeSelection(PIObject* sender, void* data);
    int onCmdCenter(PIObject* sender, void* data);
    int onCmdDelete(PIObject* sender, void* data);
    int onCmdClear(PIObject* sender, void* data);
    int onCmdLoadOverlay(PIObject* sender, void* data);
    /// \param data the platform's id (unsigned long*), null to detach
    int onCmdAttach(PIObject* sender, void* data);
    int onCmdSetMouseTool(PIObject* sender, void* data);
    int onCmdAutoDelete(PIObject* sender, void* data);
    int onCmdDrawShapeSelection(PIObject* sender, void* data);
    int onCmdStartDraw(PIObject* sender, void* data);
    int onCmdStop(PIObject* sender, void* data);
    int onCmdShapeName(PIObject* sender, void* data);
    int onCmdLlaUnits(PIObject* sender, void* data);
    int onCmdAltitudeUnits(PIObject* sender, void* data);
    int onCmdAngleUnits(PIObject* sender, void* data);
    int onCmdRangeUnits(PIObject* sender, void* data);
    int onCmdPrecision(PIObject* sender, void* data);
    int onCmdCoordinateSystem(PIObject* sender, void* data);
    int onCmdLoadExisting(PIObject* sender, void* data);
    int onCmdExistingZelSelected(PIObject* sender, void* data);
    int onCmdSave(PIObject* sender, void* data);
    int onCmdSaveAs(PIObject* sender, void* data);
    int onCmdHelp(PIObject* sender, void* data);
    int onCmdDismiss(PIObject* sender, void* data);
    int onTimeout(PIObject* sender, void* data);

  private:
    class OverlayCloseObserver;
    class ZelObserver;
    struct Widgets;
    struct UnitsMenu;

    /// The host's setting with the directory of the last save.
    static constexpr const char* kSaveDirectoryKey = "OverlayEditorSaveDirectory";

    /// A base name, a blank and a number that no shape of the overlay has.
    std::string getUniqueName_(const std::string& base);
    void setCurrentShape_(Shape* shape);
    /// The shape whose panel is shown, null for none: it may be gone.
    Shape* current_();
    void fillList_();
    /// The shape of the selected item, null when none is selected. The item of a shape that is gone goes,
    /// too, with a message.
    Shape* selectedShape_();
    /// The item of a shape, -1 when it has none.
    std::int32_t itemOf_(const Shape* shape) const;
    void selectInList_(const Shape* shape);
    void updateListManipulationButtons_();
    /// Lets the buttons follow the current tool, now and once a second while the dialog is shown.
    void updateMouseControls_();
    /// The host's own display of the edited overlay is hidden while the dialog is shown.
    void setShowEditing_(bool editing);

    UTILS::UnitType_t chosenUnits_(const PIGUI::PIOptionMenu& menu) const;
    void notifyPrefsUpdate_();

    /// Reads the whole text first; only when it holds a shape that the editor can keep, what is held is
    /// given up. \param zel the host's overlay that the text is of, null for none \return true when loaded
    bool loadOverlay_(const std::string& text, const std::string& fileName, void* zel);
    /// Where the positions of an overlay on this platform count from: the platform's place now, or the ground
    /// below the view for platform 0 and for one without a place.
    halCore::Vec3 findDefaultRefLla_(unsigned long platform) const;
    /// What the overlay holds is what a file holds now.
    /// \param platform what the file's positions count from
    void setKept_(std::string text, unsigned long platform);
    /// Whether the text is what was loaded or saved last, and the file has not gone since.
    bool isKept_(const std::string& text) const;
    /// Says whether there is something to save, when anything may have changed since it was said last.
    void updateSavedMark_();
    /// Shapes that changed since they were loaded or saved are written to a dated file among the quick
    /// shapes, and the log says where. \return false when they could not be written
    /// \param atEnd in the directory for temporary files rather than nowhere: they are lost otherwise
    bool rescueUnsaved_(bool atEnd = false) const;
    bool writeRescue_(const std::string& text, bool atEnd) const;
    /// Deletes all shapes, nothing of them being shown, listed or drawn any more.
    void giveUpShapes_();
    /// A file with something that the editor cannot keep, or that others have written since it was loaded or
    /// saved, is copied to its name with "~" before it is replaced.
    /// \return false when it must not be replaced, because there is no copy of it
    bool keepOldFile_(const std::string& fileName) const;
    /// Writes the file, and has the host show it in place of what it had loaded from it.
    bool saveZel_(const std::string& fileName);
    /// The row can be used when there is something to attach, or to detach.
    void updateAttachControls_();
    /// Attaches the shapes to a platform at its place now, or detaches them with 0.
    void attach_(unsigned long platform, bool center);
    /// Lets the shapes of an attached overlay go where its platform is now.
    void followPlatform_();
    /// What the offsets count from moves, and the shapes with it; that is no change of theirs.
    void moveReference_(const halCore::Vec3& lla);
    /// Makes the platform that stands for the reference of a file with offsets, in place of the one before.
    /// \param ori heading, pitch and roll in radians
    /// \return its id, 0 when the host refuses
    unsigned long createRelativeReferencePlatform_(const halCore::Vec3& lla, const halCore::Vec3& ori);
    void removeReferencePlatform_();
    /// Says what the offsets of a loaded file count from, when the file itself does not.
    void warnOfAssumedReference_(const std::string& fileName, const halCore::Vec3& lla) const;
    /// Lets go of the host's overlay that was edited: the host displays it again.
    void cleanupPriorZEL_();
    void setFileName_(const std::string& fileName);

    Preferences* preferences_;
    MouseManager* mouseManager_;
    Overlay* overlay_;
    std::vector<Shape*> prototypes_;
    PluginClient::Interfaces::OverlayEditorInterface* service_ = nullptr;

    /// The file that was loaded or saved last.
    FileVersion knownFile_;
    /// What was saved last: it holds nothing that would be lost.
    FileVersion savedFile_;
    /// What was last loaded or saved: the text of the shapes, empty before, and what they were attached to.
    std::string keptText_;
    unsigned long keptPlatform_ = 0;
    /// The overlay's revision when the mark was set last.
    std::optional<std::uint64_t> markedRevision_;

    Shape* currentShape_ = nullptr;
    int nameCounter_ = 1;
    /// Offsets that count from nowhere, detached: where they were assumed to count from, and the text of the
    /// shapes, which stand about it as long as nobody changes them.
    struct FromNowhere {
        halCore::Vec3 assumed;
        std::string text;
    };
    std::optional<FromNowhere> fromNowhere_;
    /// Stands where the offsets of a loaded file count from; the editor's own, 0 for none.
    unsigned long referencePlatform_ = 0;
    std::unique_ptr<PointConverter> pointConverter_ = std::make_unique<PointConverter>();
    bool editing_ = false;
    PICommon::Timeout timeout_;

    CallbackList<OverlayEditorDialog> callbacks_{this};
    FunctorTwoParams__* const onTimeoutCallback_ =
        callbacks_.make(&OverlayEditorDialog::onTimeout, WhenPaused::Call);
    std::unique_ptr<OverlayCloseObserver> closeObserver_;
    std::unique_ptr<ZelObserver> zelObserver_;
    PIGUI::PIDialogBox box_;
    std::unique_ptr<Widgets> widgets_;
    /// Made when it is first asked for.
    std::unique_ptr<SelectExistingZELDialog> existingZels_;
};

}  // namespace OverlayEditor
