#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "geo/PointConverter.h"
#include "model/Overlay.h"
#include "model/ShapeRegistry.h"
#include "model/ToolRetirement.h"
#include "pi/PICommon.h"
#include "tools/MouseManager.h"
#include "tools/PlatformMouseTool.h"
#include "tools/QuickDrawFiles.h"
#include "tools/ScreenNote.h"

namespace OverlayEditor {

/// Draws shapes straight into the view from the host's actions menu. A shape that is finished (a right click,
/// another tool, the next draw command) becomes a file of its own at once, which the host loads; one that is
/// not complete is dropped. Files that were made here can be removed again.
class QuickDrawManager {
  public:
    /// Creates the actions. None of the arguments is owned; all must outlive the manager.
    /// \param pluginName owner of the actions
    QuickDrawManager(std::string pluginName, const Preferences& preferences, MouseManager& mouseManager,
                     const ShapeRegistry& registry);
    /// Drops what is being drawn. The files that were made here are deleted if the preferences say so.
    ~QuickDrawManager();
    QuickDrawManager(const QuickDrawManager&) = delete;
    QuickDrawManager& operator=(const QuickDrawManager&) = delete;

    /// What is being drawn, null for nothing.
    Shape* drawnShape() const { return shape_; }
    /// Ends drawing and saves the shape, as a right click does.
    void finishDrawing();
    /// Ends drawing without saving anything.
    void cancelDrawing();
    /// Cancels drawing and unloads all quick shapes from the host. Their files stay.
    void removeAllShapes();
    /// The host's scenario lost a platform: nothing is attached to it any more.
    void scenarioEntityRemoved(unsigned long id);
    /// The platform that was picked is gone, as all others are: nothing is attached to it any more.
    void forgetPlatform();

    // Handlers of the actions; `data` as for any action. Each returns 1.
    int onCmdFreeDraw(PIObject* sender, void* data);
    int onCmdCircleDraw(PIObject* sender, void* data);
    int onCmdLineDraw(PIObject* sender, void* data);
    int onCmdPolyDraw(PIObject* sender, void* data);
    int onCmdRectDraw(PIObject* sender, void* data);
    int onCmdTriangleDraw(PIObject* sender, void* data);
    /// Cancels drawing if there is any. Otherwise the newest quick shape and its file go.
    int onCmdRemoveLastQuickShape(PIObject* sender, void* data);
    int onCmdRemoveAllQuickShapes(PIObject* sender, void* data);
    int onCmdSetQuickDrawDir(PIObject* sender, void* data);
    int onCmdToggleAttachMode(PIObject* sender, void* data);
    int onCmdPickAttachplatform(PIObject* sender, void* data);
    int onCmdRed(PIObject* sender, void* data);
    int onCmdBlue(PIObject* sender, void* data);
    int onCmdYellow(PIObject* sender, void* data);
    int onCmdGreen(PIObject* sender, void* data);
    int onCmdOrange(PIObject* sender, void* data);
    int onCmdPurple(PIObject* sender, void* data);
    int onCmdWhite(PIObject* sender, void* data);
    int onCmdBlack(PIObject* sender, void* data);
    /// Saves the shape that is being drawn.
    int onCmdAutoSaveCurrentShape(PIObject* sender, void* data);

  private:
    class PlatformSelectListener;
    class ZelObserver;
    struct Command;
    /// Indices into the table of colours.
    enum Color : std::size_t { Red, Blue, Yellow, Green, Orange, Purple, White, Black };

    /// A quick shape that the host shows.
    struct QuickFile {
        void* overlay = nullptr;
        std::string path;
    };

    static constexpr std::size_t kCommandCount = 19;
    static const std::array<Command, kCommandCount> kCommands;

    int addShape_(const std::string& kind);
    std::string getUniqueName_(const std::string& base);
    /// Its tool is current and has not been ended.
    bool isDrawing_() const;
    /// \return the shape, which is being drawn no more
    Shape* endTool_();
    void finishWhatEnded_();
    /// The drawing tool is in its own event then: its shape goes after it.
    int onDrawDone_(PIObject* sender, void* data);
    void save_(Shape& shape);
    /// Attaches the shape to the picked platform, its centre on it. \return the platform, 0 when not attached
    unsigned long attachShape_(const Shape& shape);
    /// Has the host show a file, and remembers both.
    void load_(const std::string& path, unsigned long platform);
    void adopt_(void* overlay, const std::string& path);
    void unloadAll_();
    /// A file that was made here and left alone since. One that others have saved over stays, and the log
    /// says so.
    bool mayDelete_(const std::string& path) const;
    void deleteFile_(const std::string& path);
    /// If the preferences say so.
    void deleteAllZelFiles_();

    std::string numberedPath_(const std::string& directory, int number) const;
    /// The counter begins at the highest number in the directory.
    void startCounting_(const std::string& directory);
    /// The number that the next file of the kind will have, as far as can be told before it is saved.
    int nextNumber_();
    /// Saves under the first number that is free for the kind, from the counter on. \return empty, or why
    /// not; `path` is then the one that was tried last
    std::string saveUnderFreeNumber_(const std::string& text, std::string& path);

    int setColor_(Color color);
    void applyColor_();
    void setActionChecked_(const char* label, bool checked);
    void platformPicked_(unsigned long id);
    void updateAttachNotification_();

    void zelAdded_(void* overlay);
    void zelRemoved_(void* overlay);

    std::string pluginName_;
    const Preferences& preferences_;
    MouseManager& mouseManager_;
    const ShapeRegistry& registry_;

    /// What an attached shape's offsets count from.
    PointConverter converter_;
    /// Holds the shape being drawn only.
    Overlay overlay_;
    Shape* shape_ = nullptr;
    std::string kind_;
    std::uint32_t color_ = 0;

    /// Newest last.
    std::vector<QuickFile> files_;
    /// All files that were made here and not removed again.
    std::map<std::string, WrittenFile> created_;
    /// The number in file names; 0 before the first.
    int counter_ = 0;

    bool attachMode_ = false;
    unsigned long platform_ = 0;
    ScreenNote note_{{.left = 0.0, .vertical = 25.0}};

    std::shared_ptr<PlatformSelectListener> listener_;
    MouseToolPtr pickerOwner_;
    PlatformMouseTool* picker_;
    std::unique_ptr<ZelObserver> zelObserver_;
    CallbackList<QuickDrawManager> callbacks_{this};
    FunctorTwoParams__* const autoSave_ = callbacks_.make(&QuickDrawManager::onCmdAutoSaveCurrentShape);
    FunctorTwoParams__* const drawDone_ = callbacks_.make(&QuickDrawManager::onDrawDone_);
    std::array<PICommon::Action, kCommandCount> actions_;
};

}  // namespace OverlayEditor
