#include "tools/QuickDrawManager.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "common/Files.h"
#include "common/Notify.h"
#include "common/SaveFile.h"
#include "common/TemporaryFile.h"
#include "model/BaseLineShape.h"
#include "model/QuickShapeDirectory.h"
#include "model/RescueFile.h"
#include "model/Utils.h"
#include "pi/Guard.h"
#include "pi/PIHALVIS.h"
#include "pi/PIWidgets.h"

namespace OverlayEditor {

namespace {

constexpr const char* kDirectoryDialogKey = "AutoSaveZelDirDialog";
constexpr const char* kAttach = "Attach Quick Shape";
constexpr const char* kPick = "Pick Attach Platform";

struct ColorAction {
    const char* label;
    std::uint32_t rgba;
};
constexpr std::array<ColorAction, 8> kColors{{{"Red Shape Color", 0xFF0000FF},
                                              {"Blue Shape Color", 0x0000FFFF},
                                              {"Yellow Shape Color", 0xFFFF00FF},
                                              {"Green Shape Color", 0x00FF00FF},
                                              {"Orange Shape Color", 0xFFAA00FF},
                                              {"Purple Shape Color", 0xFF00FFFF},
                                              {"White Shape Color", 0xFFFFFFFF},
                                              {"Black Shape Color", 0x000000FF}}};

}  // namespace

struct QuickDrawManager::Command {
    const char* label;
    CustomCallbackFunctor<QuickDrawManager>::Handler handler;
};

/// In the order of the actions menu.
const std::array<QuickDrawManager::Command, QuickDrawManager::kCommandCount> QuickDrawManager::kCommands{{
    {"Quick Free Draw", &QuickDrawManager::onCmdFreeDraw},
    {"Quick Circle Draw", &QuickDrawManager::onCmdCircleDraw},
    {"Quick Line Draw", &QuickDrawManager::onCmdLineDraw},
    {"Quick Poly Draw", &QuickDrawManager::onCmdPolyDraw},
    {"Quick Rectangle Draw", &QuickDrawManager::onCmdRectDraw},
    {"Quick Triangle Draw", &QuickDrawManager::onCmdTriangleDraw},
    {"Remove Last Quick Shape", &QuickDrawManager::onCmdRemoveLastQuickShape},
    {"Remove All Quick Shapes", &QuickDrawManager::onCmdRemoveAllQuickShapes},
    {"Set Quick Shape Directory", &QuickDrawManager::onCmdSetQuickDrawDir},
    {kAttach, &QuickDrawManager::onCmdToggleAttachMode},
    {kPick, &QuickDrawManager::onCmdPickAttachplatform},
    {kColors[Red].label, &QuickDrawManager::onCmdRed},
    {kColors[Blue].label, &QuickDrawManager::onCmdBlue},
    {kColors[Yellow].label, &QuickDrawManager::onCmdYellow},
    {kColors[Green].label, &QuickDrawManager::onCmdGreen},
    {kColors[Orange].label, &QuickDrawManager::onCmdOrange},
    {kColors[Purple].label, &QuickDrawManager::onCmdPurple},
    {kColors[White].label, &QuickDrawManager::onCmdWhite},
    {kColors[Black].label, &QuickDrawManager::onCmdBlack},
}};

class QuickDrawManager::PlatformSelectListener final : public PlatformMouseListener {
  public:
    explicit PlatformSelectListener(QuickDrawManager& manager) : manager_(&manager) {}
    void platformSelected(unsigned long platformId) override {
        if (manager_) manager_->platformPicked_(platformId);
    }
    void deactivated() override {
        if (manager_) manager_->setActionChecked_(kPick, false);
    }
    void disconnect() { manager_ = nullptr; }

  private:
    QuickDrawManager* manager_;
};

/// Quick shapes may be unloaded, and loaded again, by others than the manager: the user, the editor's dialog.
class QuickDrawManager::ZelObserver final : public PIHALVIS::ZELEventObserver {
  public:
    explicit ZelObserver(QuickDrawManager& manager) : manager_(manager) {}
    // Both note it at once: the handle may be gone when the running entry is over.
    void addedZEL(void* overlay) override {
        guarded("addedZEL", 0, [&] { return manager_.zelAdded_(overlay), 0; });
    }
    void removedZEL(void* overlay) override {
        guarded("removedZEL", 0, [&] { return manager_.zelRemoved_(overlay), 0; });
    }

  private:
    QuickDrawManager& manager_;
};

QuickDrawManager::QuickDrawManager(std::string pluginName, const Preferences& preferences,
                                   MouseManager& mouseManager, const ShapeRegistry& registry)
    : pluginName_(std::move(pluginName)),
      preferences_(preferences),
      mouseManager_(mouseManager),
      registry_(registry),
      listener_(std::make_shared<PlatformSelectListener>(*this)),
      pickerOwner_(new PlatformMouseTool),
      picker_(static_cast<PlatformMouseTool*>(pickerOwner_.get())),
      zelObserver_(std::make_unique<ZelObserver>(*this)) {
    for (std::size_t i = 0; i < kCommandCount; ++i)
        PICommon::createAction(actions_[i], pluginName_, kCommands[i].label,
                               callbacks_.make(kCommands[i].handler));
    // Saving may have been cut short when the host ended last.
    UTILS::removeAbandonedFiles(quickShapeDirectory());
    // The first time gives an action its mark.
    setActionChecked_(kAttach, false);
    setActionChecked_(kPick, false);
    setColor_(Red);
    picker_->setListener(listener_);
    PIHALVIS::registerZELObserver(zelObserver_.get());
    // Another tool takes the place of the drawing tool: the drawing is over.
    mouseManager_.setChangeListener([this] { finishWhatEnded_(); });
}

QuickDrawManager::~QuickDrawManager() {
    mouseManager_.setChangeListener({});
    callbacks_.disconnect();
    listener_->disconnect();
    guardedEnd([this] { cancelDrawing(); });
    attachMode_ = false;
    guardedEnd([this] { updateAttachNotification_(); });
    guardedEnd([this] { deleteAllZelFiles_(); });
    guardedEnd([this] { PIHALVIS::removeZELObserver(zelObserver_.get()); });
}

// Drawing

int QuickDrawManager::onCmdFreeDraw(PIObject*, void*) {
    return addShape_("Free Draw");
}
int QuickDrawManager::onCmdCircleDraw(PIObject*, void*) {
    return addShape_("Circle");
}
int QuickDrawManager::onCmdLineDraw(PIObject*, void*) {
    return addShape_("Line");
}
int QuickDrawManager::onCmdPolyDraw(PIObject*, void*) {
    return addShape_("Polygon");
}
int QuickDrawManager::onCmdRectDraw(PIObject*, void*) {
    return addShape_("Rectangle");
}
int QuickDrawManager::onCmdTriangleDraw(PIObject*, void*) {
    return addShape_("Triangle");
}

int QuickDrawManager::addShape_(const std::string& kind) {
    finishDrawing();
    const Shape* const prototype = registry_.getShapeByName(kind);
    std::unique_ptr<Shape> made(prototype ? prototype->clone() : nullptr);
    MouseTool* const tool = made ? made->mouseTool() : nullptr;
    if (!tool) {
        halNotify::notify(halNotify::Warning)
            << "Nothing is drawn: the editor has no shape of the kind " << kind;
        return 1;
    }
    kind_ = kind;
    Shape* const shape = made.release();
    overlay_.setAttachedPlatformId(0, nullptr, false);
    overlay_.addShape(shape);
    shape->setShowPoints(false);
    shape->setName(getUniqueName_(shape->name()));
    shape->setAnchorCenter(true);
    shape_ = shape;
    applyColor_();
    mouseManager_.setCurrentMouseTool(tool, true);
    tool->setDrawDoneCallback(drawDone_);
    return 1;
}

/// The number is that of the file to come, so that the two agree.
std::string QuickDrawManager::getUniqueName_(const std::string& base) {
    std::string name;
    int number = nextNumber_();
    do {
        name = base + " " + std::to_string(number++);
    } while (overlay_.findShape(name));
    return name;
}

bool QuickDrawManager::isDrawing_() const {
    const MouseTool* const tool = shape_ ? shape_->mouseTool() : nullptr;
    return tool && mouseManager_.currentMouseTool() == tool && tool->isActive();
}

Shape* QuickDrawManager::endTool_() {
    // No more the one that is being drawn: another tool becomes current.
    Shape* const shape = std::exchange(shape_, nullptr);
    MouseTool* const tool = shape->mouseTool();
    tool->setDrawDoneCallback(nullptr);
    if (mouseManager_.currentMouseTool() == tool)
        mouseManager_.clearMouseTool();
    else
        tool->deactivate();
    return shape;
}

void QuickDrawManager::finishDrawing() {
    if (!shape_) return;
    save_(*endTool_());
    overlay_.clearShapes(false);
}

void QuickDrawManager::cancelDrawing() {
    if (!shape_) return;
    endTool_();
    overlay_.clearShapes(false);
}

void QuickDrawManager::finishWhatEnded_() {
    if (shape_ && !isDrawing_()) finishDrawing();
}

int QuickDrawManager::onDrawDone_(PIObject*, void*) {
    callLater(autoSave_);
    return 1;
}

int QuickDrawManager::onCmdAutoSaveCurrentShape(PIObject*, void*) {
    finishDrawing();
    return 1;
}

// Files

void QuickDrawManager::save_(Shape& shape) {
    std::string text = overlay_.text();
    if (text.empty()) {
        const auto [low, high] = shape.boundingBox();
        const bool begun = low.lat() <= high.lat();
        if (begun)
            halNotify::notify(halNotify::Warning)
                << "Not saved: \"" << shape.name() << "\" is not complete. It is given up";
        return;
    }
    const unsigned long platform = attachShape_(shape);
    if (platform != 0) text = overlay_.text();

    std::string path;
    if (const std::string error = saveUnderFreeNumber_(text, path); !error.empty()) {
        PICommon::debugPrint("Failed to create file " + path + " for auto saving ZEL\n");
        halNotify::notify(halNotify::Error) << "Not saved: \"" << shape.name() << "\": " << error;
        writeRescueFile(text, Unrescued::AreLost);
        return;
    }
    created_.insert_or_assign(path, WrittenFile(path, text));
    load_(path, platform);
}

void QuickDrawManager::load_(const std::string& path, unsigned long platform) {
    void* const overlay = PIHALVIS::loadZELFile(path, platform, 1);
    if (overlay)
        adopt_(overlay, path);
    else
        halNotify::notify(halNotify::Error) << path << " is saved, but not shown: the host could not load it";
}

void QuickDrawManager::adopt_(void* overlay, const std::string& path) {
    const bool known = std::any_of(files_.begin(), files_.end(),
                                   [&](const QuickFile& file) { return file.overlay == overlay; });
    if (!known) files_.push_back({overlay, path});
}

void QuickDrawManager::zelAdded_(void* overlay) {
    if (created_.empty()) return;
    const std::string path = PIHALVIS::getZELFilename(overlay);
    if (created_.contains(path)) adopt_(overlay, path);
}

void QuickDrawManager::zelRemoved_(void* overlay) {
    std::erase_if(files_, [&](const QuickFile& file) { return file.overlay == overlay; });
}

int QuickDrawManager::onCmdRemoveLastQuickShape(PIObject*, void*) {
    if (shape_) {
        cancelDrawing();
        return 1;
    }
    if (files_.empty()) return 1;
    const QuickFile last = std::move(files_.back());
    files_.pop_back();
    PIHALVIS::unloadZELFile(last.overlay);
    if (mayDelete_(last.path))
        deleteFile_(last.path);
    else
        created_.erase(last.path);
    return 1;
}

int QuickDrawManager::onCmdRemoveAllQuickShapes(PIObject*, void*) {
    removeAllShapes();
    return 1;
}

void QuickDrawManager::removeAllShapes() {
    cancelDrawing();
    unloadAll_();
}

void QuickDrawManager::unloadAll_() {
    // One by one: unloading may make the host unload others.
    while (!files_.empty()) {
        void* const overlay = files_.back().overlay;
        files_.pop_back();
        PIHALVIS::unloadZELFile(overlay);
    }
}

bool QuickDrawManager::mayDelete_(const std::string& path) const {
    const auto written = created_.find(path);
    if (written == created_.end()) return false;
    if (written->second.isUntouched() || !UTILS::fileIsFile(path)) return true;
    halNotify::notify(halNotify::Warning) << path << " has been saved over since it was drawn; it stays";
    return false;
}

void QuickDrawManager::deleteFile_(const std::string& path) {
    const bool removed = UTILS::fileRemove(path);
    const int error = errno;
    if (!removed && UTILS::fileIsFile(path))
        halNotify::notify(halNotify::Warning)
            << path << " could not be deleted, and stays: " << UTILS::reasonOf(error);
    else
        created_.erase(path);
}

void QuickDrawManager::deleteAllZelFiles_() {
    if (!preferences_.autoDelete()) return;
    std::vector<std::string> doomed;
    for (const auto& [path, written] : created_)
        if (mayDelete_(path)) doomed.push_back(path);
    // What stays, the host goes on showing.
    std::erase_if(files_, [&](const QuickFile& file) {
        return !std::binary_search(doomed.begin(), doomed.end(), file.path);
    });
    unloadAll_();
    for (const std::string& path : doomed) deleteFile_(path);
}

std::string QuickDrawManager::numberedPath_(const std::string& directory, int number) const {
    return directory + "/" + kind_ + "_" + std::to_string(number) + ".zel";
}

int QuickDrawManager::nextNumber_() {
    constexpr int kTries = 100;
    const std::string directory = quickShapeDirectory();
    startCounting_(directory);
    int number = counter_;
    while (number < counter_ + kTries && UTILS::fileIsFile(numberedPath_(directory, number))) ++number;
    return number;
}

void QuickDrawManager::startCounting_(const std::string& directory) {
    if (counter_ == 0) counter_ = std::max(1, highestQuickShapeNumber(directory));
}

std::string QuickDrawManager::saveUnderFreeNumber_(const std::string& text, std::string& path) {
    const std::string directory = makeQuickShapeDirectory();
    startCounting_(directory);
    const int first = counter_;
    const auto name = [&](int i) {
        counter_ = first + i;
        return numberedPath_(directory, counter_);
    };
    return UTILS::saveNewFile(name, text, path);
}

int QuickDrawManager::onCmdSetQuickDrawDir(PIObject*, void*) {
    PICommon::FileDialogRequest request;
    request.title = "Select Quick-Draw Shape Directory";
    request.startDirectory = quickShapeDirectory();
    request.settingsGroup = "SETTINGS";
    request.settingsKey = kDirectoryDialogKey;
    const std::string chosen = PICommon::showDirectorySelectDialog(request);
    if (chosen.empty()) return 1;
    PIGUI::PIRegistry::setValue(kQuickShapeDirectoryKey, chosen);
    // Numbers never go back, and go on behind what stands in the new place.
    if (counter_ != 0) counter_ = std::max(counter_, highestQuickShapeNumber(chosen));
    return 1;
}

// Colours

int QuickDrawManager::onCmdRed(PIObject*, void*) {
    return setColor_(Red);
}
int QuickDrawManager::onCmdBlue(PIObject*, void*) {
    return setColor_(Blue);
}
int QuickDrawManager::onCmdYellow(PIObject*, void*) {
    return setColor_(Yellow);
}
int QuickDrawManager::onCmdGreen(PIObject*, void*) {
    return setColor_(Green);
}
int QuickDrawManager::onCmdOrange(PIObject*, void*) {
    return setColor_(Orange);
}
int QuickDrawManager::onCmdPurple(PIObject*, void*) {
    return setColor_(Purple);
}
int QuickDrawManager::onCmdWhite(PIObject*, void*) {
    return setColor_(White);
}
int QuickDrawManager::onCmdBlack(PIObject*, void*) {
    return setColor_(Black);
}

int QuickDrawManager::setColor_(Color color) {
    color_ = kColors[color].rgba;
    applyColor_();
    for (const ColorAction& action : kColors)
        setActionChecked_(action.label, action.label == kColors[color].label);
    return 1;
}

void QuickDrawManager::applyColor_() {
    auto* const shape = dynamic_cast<BaseLineShape*>(shape_);
    if (!shape) return;
    const auto byte = [this](int shift) { return static_cast<unsigned char>(color_ >> shift & 0xFF); };
    shape->setLineColor(byte(24), byte(16), byte(8), byte(0));
}

void QuickDrawManager::setActionChecked_(const char* label, bool checked) {
    PICommon::setActionChecked(pluginName_, label, checked);
}

// Attaching

int QuickDrawManager::onCmdToggleAttachMode(PIObject*, void* data) {
    attachMode_ = data ? *static_cast<const std::int32_t*>(data) != 0 : !attachMode_;
    setActionChecked_(kAttach, attachMode_);
    updateAttachNotification_();
    return 1;
}

int QuickDrawManager::onCmdPickAttachplatform(PIObject*, void*) {
    if (mouseManager_.currentMouseTool() == picker_)
        mouseManager_.clearMouseTool();
    else
        mouseManager_.setCurrentMouseTool(picker_, true);
    setActionChecked_(kPick, picker_->isActive());
    return 1;
}

void QuickDrawManager::platformPicked_(unsigned long id) {
    platform_ = id;
    picker_->clearSelected();
    updateAttachNotification_();
}

void QuickDrawManager::scenarioEntityRemoved(unsigned long id) {
    if (id == platform_) forgetPlatform();
}

void QuickDrawManager::forgetPlatform() {
    if (platform_ == 0) return;
    platform_ = 0;
    updateAttachNotification_();
    if (attachMode_)
        halNotify::notify(halNotify::Warning)
            << "The platform of the quick shapes is gone; pick another one to attach them";
}

void QuickDrawManager::updateAttachNotification_() {
    const unsigned long platform = attachMode_ ? platform_ : 0;
    note_.show(platform == 0 ? std::string() : "Attach To: " + Utils::platformName(platform));
}

unsigned long QuickDrawManager::attachShape_(const Shape& shape) {
    if (!attachMode_) return 0;
    const unsigned long platform = platform_;
    halCore::Vec3 place;
    const char* problem = nullptr;
    if (platform == 0)
        problem = "no platform is picked";
    else if (!shape.canAttach())
        problem = "a shape of this kind cannot be attached";
    else if (Utils::getPlatformLla(platform, place) != 0)
        problem = "the picked platform has no position";
    converter_.setReferenceLla(place, platform);
    if (!problem && !shape.fits(converter_, true))
        problem = "no offsets from the picked platform lead to all of it";
    if (problem) {
        halNotify::notify(halNotify::Warning)
            << "\"" << shape.name() << "\" is saved without a platform: " << problem;
        return 0;
    }
    overlay_.setAttachedPlatformId(platform, &converter_, true);
    return platform;
}

}  // namespace OverlayEditor
