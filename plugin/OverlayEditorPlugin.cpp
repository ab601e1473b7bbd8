#include "plugin/OverlayEditorPlugin.h"

#include <algorithm>
#include <utility>

#include "common/Notify.h"
#include "model/ShapeKinds.h"
#include "pi/EntryScope.h"
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
    takeDown_();
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
    if (std::exchange(startedUp_, true)) return 0;
    const CallbackPause pause;
    halNotify::setNotifyHandler([source = Name()](halNotify::Severity severity, const std::string& message) {
        PICommon::notify(severity, source, message);
    });
    ToolMaker::install(&toolMaker_);
    PanelMaker::install(&panelMaker_);
    EntryScope::setListener([this] { handlePostponed_(); });

    preferences_ = std::make_unique<Preferences>();
    icon_ = std::make_unique<PIGUI::PIIcon>();
    icon_->loadPNGByArray(editorIconPng().data(), editorIconPng().size());
    FunctorTwoParams__* const show = callbacks_.make(&OverlayEditorPlugin::onCmdShowSettings);
    menuItem_ = std::make_unique<PIGUI::PIMenuItem>(nullptr, "Overlay Editor...", show);
    action_ = std::make_unique<PICommon::Action>();
    PICommon::createAction(*action_, Name(), "Overlay Editor Dialog", show);
    menuItem_->setIcon(*icon_);
    mouseManager_ = std::make_unique<MouseManager>();
    hint_ = std::make_unique<ScreenNote>(
        ScreenNote::Place{.left = 10.0, .vertical = 8.0, .bottom = true, .font = "arialbd.ttf 14"});
    mouseManager_->setHintListener([this](std::string_view text) { hint_->show(std::string(text)); });
    shapeRegistry_ = std::make_unique<ShapeRegistry>();
    overlay_ = std::make_unique<Overlay>();
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
            << "The service " << service_->name() << " could not be published";
    return 0;
}

int OverlayEditorPlugin::Close() {
    takeDown_();
    return 0;
}

void OverlayEditorPlugin::takeDown_() {
    EntryScope::setListener({});
    postponed_.clear();
    // Nothing that is taken down later may draw, refresh or end a drag with preferences that are gone.
    if (quickDrawManager_) quickDrawManager_->finishDrawing();
    if (mouseManager_) mouseManager_->clearMouseTool();
    if (mouseManager_) mouseManager_->setHintListener({});
    hint_.reset();
    if (dialog_) dialog_->hide();
    if (overlay_) overlay_->setActive(false);

    callbacks_.disconnect();
    action_.reset();
    menuItem_.reset();

    service_.reset();
    rightClickObserver_.reset();
    dialog_.reset();
    serviceInterface_.reset();
    quickDrawManager_.reset();
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

int OverlayEditorPlugin::onCmdShowSettings(PIObject*, void*) {
    if (!preferences_) return 1;
    if (!dialog_) {
        const CallbackPause pause;
        dialog_ = std::make_unique<OverlayEditorDialog>(preferences_.get(), mouseManager_.get(),
                                                        overlay_.get(), shapeRegistry_->getShapes());
        dialog_->setIcon(*icon_);
        dialog_->setServiceInterface(serviceInterface_.get());
    }
    dialog_->show();
    return 1;
}

int OverlayEditorPlugin::onCmdLoadHalvisZels(PIObject* sender, void* data) {
    onCmdShowSettings(sender, data);
    if (!dialog_) return 1;
    // While the host serves the first ones it may unload others, or open another menu.
    const auto& offered = rightClickObserver_->overlays();
    for (void* const overlay : std::vector(offered))
        if (std::find(offered.begin(), offered.end(), overlay) != offered.end()) dialog_->loadZels({overlay});
    return 1;
}

void OverlayEditorPlugin::listenToEvents(PIApplicationEvents_t event, void* data) {
    const bool aboutEntity = event == PIApplicationEvents_t::EntityRemoved;
    const HostEvent arrived{event, aboutEntity && data ? *static_cast<const std::uint64_t*>(data) : 0};
    if (EntryScope::isNested()) {
        if (std::find(postponed_.begin(), postponed_.end(), arrived) == postponed_.end())
            postponed_.push_back(arrived);
        return;
    }
    handleEvent_(arrived);
}

void OverlayEditorPlugin::handlePostponed_() {
    // Events may come while these are handled. A host that sends one with every call would keep us here for
    // ever: then the last ones wait until it enters again, which it does with each frame.
    constexpr int kTurns = 8;
    for (int turn = 0; turn < kTurns && !postponed_.empty(); ++turn)
        for (const HostEvent& event : std::exchange(postponed_, {})) handleEvent_(event);
}

void OverlayEditorPlugin::handleEvent_(const HostEvent& event) {
    // The note in the view names the platform, whether the dialog has been opened or not.
    if (event.id != 0 && quickDrawManager_) quickDrawManager_->scenarioEntityRemoved(event.id);
    if (quickDrawManager_ && endsScenario(event.code)) quickDrawManager_->forgetPlatform();
    if (dialog_) {
        switch (event.code) {
            case PIApplicationEvents_t::ScenarioCleared:
            case PIApplicationEvents_t::ScenarioReplaced:
            case PIApplicationEvents_t::ScenarioClosed:
                // Before the dialog ends all drawing, at which the quick shape would be saved.
                quickDrawManager_->cancelDrawing();
                dialog_->onCmdClear(nullptr, nullptr);
                quickDrawManager_->removeAllShapes();
                break;
            case PIApplicationEvents_t::EntityRemoved:
                dialog_->scenarioEntityRemoved(event.id);
                break;
            case PIApplicationEvents_t::PlatformAdded:
                dialog_->scenarioPlatformAdded();
                break;
            default:
                break;
        }
    }
}

void OverlayEditorPlugin::preDrawOnRefresh(int widthPixels, int heightPixels) {
    if (mouseManager_) mouseManager_->preDrawOnRefresh(widthPixels, heightPixels);
}

int OverlayEditorPlugin::handleMouseEvent(PIGUI::PIMouseEventType_t type, const PIGUI::PIMouseEvent& event) {
    return mouseManager_ ? mouseManager_->handleMouseEvent(type, event) : 0;
}

}  // namespace OverlayEditor
