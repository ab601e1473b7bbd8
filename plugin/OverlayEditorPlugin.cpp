#include "plugin/OverlayEditorPlugin.h"

#include <utility>

#include "common/Notify.h"
#include "model/ShapeKinds.h"
#include "pi/Guard.h"
#include "pi/HostFaults.h"
#include "plugin/EditorIcon.h"
#include "plugin/RightClickObserver.h"
#include "plugin/VSI.h"
#include "tools/ToolView.h"

namespace OverlayEditor {

namespace {

bool endsScenario(PIApplicationEvents_t code) {
    return code == PIApplicationEvents_t::ScenarioCleared ||
           code == PIApplicationEvents_t::ScenarioReplaced || code == PIApplicationEvents_t::ScenarioClosed;
}

}  // namespace

OverlayEditorPlugin::OverlayEditorPlugin() = default;

OverlayEditorPlugin::~OverlayEditorPlugin() {
    takeDownGuarded_();
}

std::string OverlayEditorPlugin::Name() const {
    return "OverlayEditor";
}
std::string OverlayEditorPlugin::Description() const {
    return "Overlay Editor Plug-in lets you create and edit shapes in 3-D in HALVIS.";
}
std::string OverlayEditorPlugin::Author() const {
    return VSI::makerName();
}
std::string OverlayEditorPlugin::Version() const {
    return VSI::version();
}
std::string OverlayEditorPlugin::URL() const {
    return VSI::webAddress();
}
std::string OverlayEditorPlugin::ContactInfo() const {
    return VSI::contact();
}

int OverlayEditorPlugin::StartUp() {
    if (std::exchange(startedUp_, true)) return startUpStatus_;
    const bool built = guarded("StartUp", false, [this] {
        const std::uint64_t exceptions = HostFaults::exceptions();
        build_();
        if (HostFaults::exceptions() == exceptions) return true;
        halNotify::notify(halNotify::Error)
            << "OverlayEditor is not started: the host has failed at a service";
        return false;
    });
    if (built) return 0;
    startUpStatus_ = kStatusFailed;
    takeDownGuarded_();
    return startUpStatus_;
}

void OverlayEditorPlugin::build_() {
    halNotify::setNotifyHandler(
        [this](halNotify::Severity severity, const std::string& message) { say_(severity, message); });
    ToolMaker::install(&toolMaker_);
    PanelMaker::install(&panelMaker_);

    preferences_ = std::make_unique<Preferences>();
    icon_ = std::make_unique<PIGUI::PIIcon>();
    icon_->loadPNGByArray(editorIconPng().data(), editorIconPng().size());
    FunctorTwoParams__* const show = callbacks_.make(&OverlayEditorPlugin::onCmdShowSettings);
    menuItem_ = std::make_unique<PIGUI::PIMenuItem>(nullptr, "Overlay Editor...", show);
    const auto offer = [this](const char* label, FunctorTwoParams__* callback) {
        actions_.push_back(std::make_unique<PICommon::Action>());
        PICommon::createAction(*actions_.back(), Name(), label, callback);
    };
    offer("Overlay Editor Dialog", show);
    for (const auto& [label, handler] :
         {std::pair{"Undo Overlay Edit", &OverlayEditorPlugin::onCmdUndo},
          std::pair{"Redo Overlay Edit", &OverlayEditorPlugin::onCmdRedo},
          std::pair{"Finish Overlay Shape", &OverlayEditorPlugin::onCmdFinish},
          std::pair{"Remove Last Overlay Point", &OverlayEditorPlugin::onCmdRemoveLastPoint},
          std::pair{"Delete Overlay Shape", &OverlayEditorPlugin::onCmdDelete},
          std::pair{"Duplicate Overlay Shape", &OverlayEditorPlugin::onCmdDuplicate},
          std::pair{"Type Next Overlay Point", &OverlayEditorPlugin::onCmdTypeNextPoint},
          std::pair{"Cancel Overlay Drawing", &OverlayEditorPlugin::onCmdCancel}})
        offer(label, callbacks_.make(handler));
    menuItem_->setIcon(*icon_);
    mouseManager_ = std::make_unique<MouseManager>();
    hint_ = std::make_unique<ScreenNote>(
        ScreenNote::Place{.left = 10.0, .vertical = 8.0, .bottom = true, .font = "arialbd.ttf 14"});
    said_ = std::make_unique<ScreenNote>(
        ScreenNote::Place{.left = 10.0, .vertical = hint_->end(), .bottom = true, .font = "arialbd.ttf 14"});
    mouseManager_->setHintListener([this](std::string_view text) {
        hint_->show(std::string(text));
        said_->moveTo(hint_->end());
        if (text.empty() && dialog_ && dialog_->shown()) said_->show({});
    });
    shapeRegistry_ = std::make_unique<ShapeRegistry>();
    overlay_ = std::make_unique<Overlay>();
    snap_ = std::make_unique<OverlaySnap>(*preferences_, *overlay_);
    SnapSource::install(snap_.get());
    quickDrawManager_ =
        std::make_unique<QuickDrawManager>(Name(), *preferences_, *mouseManager_, *shapeRegistry_);
    addAllKinds(*shapeRegistry_, *preferences_);
    rightClickObserver_ = std::make_unique<RightClickObserver>(*this);
    serviceInterface_ = std::make_unique<OverlayEditorInterface>();
    service_ = std::make_unique<PICommon::BasicService>(
        PluginClient::Interfaces::OVERLAYEDITOR_SERVICE_NAME,
        static_cast<PluginClient::Interfaces::OverlayEditorInterface*>(serviceInterface_.get()));
    if (!service_->registerSelf())
        halNotify::notify(halNotify::Warning)
            << "Other plug-ins do not hear of what this editor saves: the service " << service_->name()
            << " could not be published";
    lostWatch_ = std::make_unique<LostWatch>([this] {
        if (dialog_ && dialog_->shown())
            dialog_->offerLost();
        else
            halNotify::notify(halNotify::Warning)
                << "Shapes that were not saved when the host ended last can be recovered: open \"Overlay "
                   "Editor...\"";
    });
}

int OverlayEditorPlugin::Close() {
    takeDown_();
    return 0;
}

void OverlayEditorPlugin::takeDownGuarded_() noexcept {
    guardedEnd([this] { takeDown_(); });
}

void OverlayEditorPlugin::takeDown_() {
    // Nothing that is taken down later may draw, refresh or end a drag with preferences that are gone.
    if (quickDrawManager_) quickDrawManager_->finishDrawing();
    if (mouseManager_) mouseManager_->clearMouseTool();
    if (mouseManager_) mouseManager_->setHintListener({});
    hint_.reset();
    said_.reset();
    if (dialog_) dialog_->hide();
    if (overlay_) overlay_->setActive(false);

    callbacks_.disconnect();
    lostWatch_.reset();
    actions_.clear();
    menuItem_.reset();

    service_.reset();
    rightClickObserver_.reset();
    nextPoint_.reset();
    dialog_.reset();
    serviceInterface_.reset();
    quickDrawManager_.reset();
    SnapSource::install(nullptr);
    snap_.reset();
    preferences_.reset();
    mouseManager_.reset();
    overlay_.reset();
    shapeRegistry_.reset();
    icon_.reset();

    releaseGraphics();
    ToolMaker::install(nullptr);
    PanelMaker::install(nullptr);
    halNotify::setNotifyHandler({});
}

void OverlayEditorPlugin::say_(halNotify::Severity severity, const std::string& message) {
    PICommon::notify(severity, Name(), message);
    if (severity > halNotify::Warning) return;
    if (dialog_) dialog_->hear(severity, message);
    const bool seen = dialog_ && dialog_->shown() && !(mouseManager_ && mouseManager_->isActive());
    if (!seen && said_) said_->show(message);
}

int OverlayEditorPlugin::onCmdShowSettings(PIObject*, void*) {
    if (!dialog_) {
        dialog_ = std::make_unique<OverlayEditorDialog>(preferences_.get(), mouseManager_.get(),
                                                        overlay_.get(), shapeRegistry_->getShapes());
        dialog_->setIcon(*icon_);
        dialog_->setServiceInterface(serviceInterface_.get());
        dialog_->setOverListener([this] {
            if (said_) said_->show({});
        });
    }
    if (said_) said_->show({});
    dialog_->show();
    return 1;
}

int OverlayEditorPlugin::edit_(int (OverlayEditorDialog::*command)(PIObject*, void*)) {
    return dialog_ && dialog_->shown() ? (*dialog_.*command)(nullptr, nullptr) : 1;
}

int OverlayEditorPlugin::onCmdUndo(PIObject*, void*) {
    return edit_(&OverlayEditorDialog::onCmdUndo);
}

int OverlayEditorPlugin::onCmdRedo(PIObject*, void*) {
    return edit_(&OverlayEditorDialog::onCmdRedo);
}

int OverlayEditorPlugin::onCmdFinish(PIObject*, void*) {
    // The quick shape that is drawn ends, too.
    if (mouseManager_ && mouseManager_->isActive()) mouseManager_->clearMouseTool();
    return edit_(&OverlayEditorDialog::onCmdStop);
}

int OverlayEditorPlugin::onCmdRemoveLastPoint(PIObject*, void*) {
    return edit_(&OverlayEditorDialog::onCmdRemoveLastPoint);
}

int OverlayEditorPlugin::onCmdDelete(PIObject*, void*) {
    if (dialog_ && dialog_->shown()) countCommand();
    return edit_(&OverlayEditorDialog::onCmdDelete);
}

int OverlayEditorPlugin::onCmdDuplicate(PIObject*, void*) {
    if (dialog_ && dialog_->shown()) countCommand();
    return edit_(&OverlayEditorDialog::onCmdDuplicate);
}

int OverlayEditorPlugin::onCmdTypeNextPoint(PIObject*, void*) {
    const auto toDialog = [this] {
        const bool isQuick = quickDrawManager_ && quickDrawManager_->drawnShape();
        return dialog_ && !isQuick ? dialog_->nextTarget() : NextTarget{};
    };
    if (!nextPoint_)
        nextPoint_ = std::make_unique<NextPointDialog>(
            NextTarget{.shape =
                           [this, toDialog] {
                               if (Shape* const quick = quickDrawManager_->drawnShape()) return quick;
                               const NextTarget target = toDialog();
                               return target.shape ? target.shape() : nullptr;
                           },
                       .begin =
                           [toDialog] {
                               if (const NextTarget target = toDialog(); target.begin) target.begin();
                           },
                       .taken =
                           [toDialog] {
                               if (const NextTarget target = toDialog(); target.taken) target.taken();
                           },
                       .finish =
                           [this] {
                               onCmdFinish(nullptr, nullptr);
                               nextPoint_->hide();
                           }});
    nextPoint_->show();
    return 1;
}

int OverlayEditorPlugin::onCmdCancel(PIObject*, void*) {
    if (quickDrawManager_) quickDrawManager_->cancelDrawing();
    return edit_(&OverlayEditorDialog::onCmdCancelDrawing);
}

int OverlayEditorPlugin::onCmdLoadHalvisZels(PIObject* sender, void* data) {
    // The item of a context menu is no widget of ours.
    countCommand();
    onCmdShowSettings(sender, data);
    dialog_->loadZels(rightClickObserver_->overlays());
    return 1;
}

void OverlayEditorPlugin::listenToEvents(PIApplicationEvents_t event, void* data) {
    const bool removed = event == PIApplicationEvents_t::EntityRemoved;
    const std::uint64_t id = removed && data ? *static_cast<const std::uint64_t*>(data) : 0;
    // The note in the view names the platform, whether the dialog has been opened or not.
    if (id != 0 && quickDrawManager_) quickDrawManager_->scenarioEntityRemoved(id);
    if (quickDrawManager_ && endsScenario(event)) quickDrawManager_->forgetPlatform();
    if (!dialog_) return;
    if (endsScenario(event)) {
        // Before the dialog ends all drawing, at which the quick shape would be saved.
        quickDrawManager_->cancelDrawing();
        dialog_->onCmdClear(nullptr, nullptr);
        quickDrawManager_->removeAllShapes();
    }
    if (removed) dialog_->scenarioEntityRemoved(id);
    if (event == PIApplicationEvents_t::PlatformAdded) dialog_->scenarioPlatformAdded();
}

void OverlayEditorPlugin::preDrawOnRefresh(int widthPixels, int heightPixels) {
    if (dialog_) dialog_->beforeRefresh();
    if (mouseManager_) mouseManager_->preDrawOnRefresh(widthPixels, heightPixels);
    if (dialog_) dialog_->afterRefresh(widthPixels, heightPixels);
}

int OverlayEditorPlugin::handleMouseEvent(PIGUI::PIMouseEventType_t type, const PIGUI::PIMouseEvent& event) {
    using Type = PIGUI::PIMouseEventType_t;
    if (type == Type::LeftPress || type == Type::RightPress) {
        countCommand();
        if (said_) said_->show({});
    }
    return mouseManager_ ? mouseManager_->handleMouseEvent(type, event) : 0;
}

}  // namespace OverlayEditor
