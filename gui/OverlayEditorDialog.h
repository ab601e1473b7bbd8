#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "common/Notify.h"
#include "geo/UnitTypes.h"
#include "gui/NextRow.h"
#include "gui/OtherFormats.h"
#include "gui/RefusedText.h"
#include "gui/RingsDialog.h"
#include "gui/SelectExistingZELDialog.h"
#include "model/Document.h"
#include "model/Preferences.h"
#include "pi/OverlayEditorInterface.h"
#include "pi/PICommon.h"
#include "pi/PIWidgets.h"
#include "tools/MouseManager.h"
#include "tools/OverlayMarks.h"

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
    bool shown() const { return editing_ && box_.shown(); }
    void setIcon(const PIGUI::PIIcon& icon) { box_.setIcon(icon); }
    /// Told of every overlay that was saved; null for nobody.
    void setServiceInterface(PluginClient::Interfaces::OverlayEditorInterface* service) {
        service_ = service;
    }

    /// Gives up the shapes that are held and takes these, with their ownership.
    void setCurrentShapes(const std::vector<Shape*>& shapes);
    /// Takes overlays that the host has loaded into the editor, one after the other: the last one is edited.
    void loadZels(const std::vector<void*>& overlays);

    /// What the editor has to say is shown at the dialog's lower edge.
    void hear(halNotify::Severity severity, const std::string& text);
    /// What is typed in place of clicks goes to the current shape, each step a step by itself.
    NextTarget nextTarget();

    /// Called when that is over; empty for nobody.
    void setOverListener(std::function<void()> over);
    /// Says what a host that ended without a word has left, until the user has taken or discarded it.
    void offerLost();

    void scenarioEntityRemoved(unsigned long id);
    void scenarioZELsChanged();
    void scenarioPlatformAdded();

    /// Around each refresh of the view: the shapes are where their platform is when the tool draws them; then
    /// comes what is drawn beside it.
    void beforeRefresh();
    void afterRefresh(int widthPixels, int heightPixels);

    int onCmdCurrentShapeSelection(PIObject* sender, void* data);
    int onCmdCenter(PIObject* sender, void* data);
    int onCmdDelete(PIObject* sender, void* data);
    int onCmdAnswer(PIObject* sender, void* data);
    /// What a host that ended without a word has left, or keeps it in a rescue file alone.
    int onCmdRecoverLost(PIObject* sender, void* data);
    int onCmdDiscardLost(PIObject* sender, void* data);
    int onCmdDuplicate(PIObject* sender, void* data);
    int onCmdRings(PIObject* sender, void* data);
    int onCmdMakeRings(PIObject* sender, void* data);
    int onCmdSameStyle(PIObject* sender, void* data);
    int onCmdUndo(PIObject* sender, void* data);
    int onCmdRedo(PIObject* sender, void* data);
    /// Ends drawing without what is held of it. All steps of a shape that is drawn for the first time are
    /// taken back, and can be done again.
    int onCmdCancelDrawing(PIObject* sender, void* data);
    /// While a shape is drawn: its last point goes, of a hand-drawn one the last line.
    int onCmdRemoveLastPoint(PIObject* sender, void* data);
    int onCmdClear(PIObject* sender, void* data);
    int onCmdLoadOverlay(PIObject* sender, void* data);
    /// \param data the platform's id (unsigned long*), null to detach
    /// A load that is under way ends, and what is edited stays.
    int onCmdCancelLoading(PIObject* sender, void* data);
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
    int onZelsChanged(PIObject* sender, void* data);

  private:
    class OverlayCloseObserver;
    class ZelObserver;
    struct Widgets;
    struct UnitsMenu;

    /// A base name, a blank and a number that no shape of the overlay has.
    std::string getUniqueName_(const std::string& base);
    void setCurrentShape_(Shape* shape);
    void noteShownPoint_();
    /// A new shape comes to the overlay and its list.
    Shape* add_(std::unique_ptr<Shape> shape);
    /// A shape of the list is the current one, and the mouse the host's.
    void choose_(Shape* shape);
    /// The shape whose panel is shown, null for none: it may be gone.
    Shape* current_();
    /// The list gets the overlay's shapes; many of them a slice at a time, and all of them before anything is
    /// done with the list.
    void fillList_();
    void listOn_(Slice& slice);
    void listRest_();
    /// What is told of each command of the user's, before it does anything. \see setCommandListener
    void commanded_(PIObject* sender);
    void mouseMoved_(PIGUI::PIMouseEventType_t type);
    /// Whether the mouse draws the current shape, or edits it.
    bool draws_();
    /// Where rings lie about at first: in the overlay's form of positions.
    /// \param reference what its offsets count from, null for places
    PlacedPoint ringCenter_(const PointConverter* reference);
    /// What the mouse holds of the current shape is let go; it is drawn on. \return whether it held anything
    bool letGo_();
    /// A text that is typed and holds not yet, or not at all, goes. \return whether there was any
    bool dropTyped_();
    void step_(History::Outcome (Document::*step)());
    /// Of a line the panel shows the point that a step was about.
    void showChangedPoint_(const ShapeStatePtr& was, const ShapeStatePtr& now);
    void showSteps_();
    void delete_(Shape* shape);
    /// The shape of the selected item, null when none is selected. The item of a shape that is gone goes,
    /// too, with a message.
    Shape* selectedShape_();
    /// The item of a shape, -1 when it has none.
    std::int32_t itemOf_(const Shape* shape);
    void updateListManipulationButtons_();
    /// Lets the buttons follow the current tool, now and once a second while the dialog is shown.
    void updateMouseControls_();
    /// The shapes go where their platform is now; once a second the panel shows it.
    void followPlatform_() { carried_ = document_.followPlatform() || carried_; }
    /// Shapes that were added and never touched go when the user works on another one.
    void dropUntouched_();
    /// The host's own display of the edited overlay is hidden while the dialog is shown.
    void setShowEditing_(bool editing);

    UTILS::UnitType_t chosenUnits_(const PIGUI::PIOptionMenu& menu) const;
    void notifyPrefsUpdate_();

    /// What the user was asked for in a dialog of the host's is done with what is there then: what has come
    /// while it was open comes first.
    void afterAsking_(std::function<void()> work);
    /// A load that is under way. Until all of it is there what is edited can be edited on.
    struct Loading {
        /// As long as an overlay is made of another program's file.
        std::unique_ptr<UTILS::OtherFormatReading> conversion;
        bool hasWaited = false;
        Document::Reading reading;
        bool back = false;
        std::function<void(bool loaded)> then;
        /// Of the command that has begun it.
        const PIObject* sender = nullptr;
        bool insists = false;
        std::chrono::steady_clock::time_point begun;
    };
    /// Loads what is small at once, and other things in the pauses between the host's entries. One that is
    /// under way ends.
    /// \param back \see loadOverlay_ \param then called when it is over, unless it was canceled
    /// \param conversion makes the text first
    void load_(Document::Reading reading, bool back, std::function<void(bool loaded)> then = {},
               std::unique_ptr<UTILS::OtherFormatReading> conversion = nullptr);
    void goOnLoading_(Slice& slice);
    /// \return whether the text is still made
    bool isConverting_();
    void cancelLoading_(const std::string& why);
    void loadNextZel_();
    /// Only when there is a shape that the editor can keep, what is held is given up. \return whether it was
    /// \param back whether the user goes back to what the file holds, when it is the one that is edited
    bool loadOverlay_(Document::Reading reading, bool back);
    void saveZel_(const std::string& fileName);
    /// Says whether there is something to save.
    void updateSavedMark_();
    /// What is not saved is kept, and the user offered to go back. \return false when it could not be
    bool rescued_();
    void clear_();
    /// Nothing of the shapes is shown, listed or drawn any more: they are about to go.
    void giveUpShapes_();
    /// The row can be used when there is something to attach, or to detach.
    void updateAttachControls_();
    /// File and attachment are shown as the document has them.
    void showDocument_();

    Preferences* preferences_;
    MouseManager* mouseManager_;
    Overlay* overlay_;
    std::vector<Shape*> prototypes_;
    PluginClient::Interfaces::OverlayEditorInterface* service_ = nullptr;

    Document document_;
    /// Overlays that wait for loadZels, and that the host still has.
    std::vector<void*> toLoad_;
    /// The files of those that did not wait any more.
    std::vector<std::string> sent_;
    std::optional<Loading> loading_;
    /// Whether the list lacks shapes: those whose numbers are beyond this one.
    bool listing_ = false;
    std::uint64_t listed_ = 0;
    Shape* currentShape_ = nullptr;
    /// What the button behind the message does.
    enum class Answer { LoadRescued, Discard };
    Answer answer_ = Answer::LoadRescued;
    /// With what unsaved shapes were to be given up that could not be rescued, and when: used once more soon,
    /// it gives them up.
    const PIObject* refused_ = nullptr;
    std::chrono::steady_clock::time_point refusedAt_;
    const PIObject* sender_ = nullptr;
    bool insists_ = false;
    /// What is offered to be recovered.
    std::optional<Document::Lost> lost_;
    /// By the shape's number, the point that its panel showed last.
    std::map<std::uint64_t, unsigned long> shownPoints_;
    int nameCounter_ = 1;
    /// The number of the shape that was added last, until its drawing has ended; 0 for none.
    std::uint64_t fresh_ = 0;
    /// Shapes that were added, by their numbers, and what they were then.
    std::map<std::uint64_t, ShapeStatePtr> added_;
    /// The platform has carried the shapes since the panel showed where they are.
    bool carried_ = false;
    OverlayMarks marks_;
    bool editing_ = false;
    PICommon::Timeout timeout_;

    CallbackList<OverlayEditorDialog> callbacks_{this};
    FunctorTwoParams__* const onTimeoutCallback_ =
        callbacks_.make(&OverlayEditorDialog::onTimeout, Arrival::AtOnce);
    FunctorTwoParams__* const followTool_ = callbacks_.make(&OverlayEditorDialog::onCmdSetMouseTool);
    std::unique_ptr<OverlayCloseObserver> closeObserver_;
    std::unique_ptr<ZelObserver> zelObserver_;
    PIGUI::PIDialogBox box_;
    std::unique_ptr<Widgets> widgets_;
    std::unique_ptr<RefusedText> refusedName_;
    /// Made when it is first asked for.
    std::unique_ptr<SelectExistingZELDialog> existingZels_;
    std::unique_ptr<RingsDialog> rings_;
};

}  // namespace OverlayEditor
