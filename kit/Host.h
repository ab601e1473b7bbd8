#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "kit/Findings.h"
#include "pi/HostContract.h"

namespace kit {

using Service = PIServerFunctions_t;

constexpr double kRightAngle = 1.5707963267948966;

/// Where the plug-in stands in its life, as this host knows it.
enum class Phase { Loaded, Initialised, Started, Closed, CleanedUp };

/// A host without a screen that serves every number of the contract. It keeps what it is told, so that a
/// check can look at it and Hands can use it; it judges each call (thread, identity, phase, class of the
/// record, arguments, handles), and a fault is told once. After Close it says what the plug-in has left, and
/// drops it.
class Host final : public PIServiceTable {
  public:
    struct Widget {
        Service kind{};
        void* handle = nullptr;
        void* parent = nullptr;
        void* current = nullptr;  ///< of a switcher: the child that is shown; null: the first
        std::string caption;      ///< with its tooltip; a list's headers
        FunctorTwoParams__* callback = nullptr;
        FunctorTwoParams__* chosen = nullptr;  ///< of a list: a row was chosen
        FunctorTwoParams__* typing = nullptr;  ///< of a line: something was typed
        PIObject* wrapper = nullptr;
        PIGUI::PICloseObserver* closeObserver = nullptr;
        std::string text;  ///< value of a text field; caption of others, as it is now
        double number = 0.0;
        double least = 0.0, most = 9999.0;
        bool shown = true, enabled = true, checked = false;
        std::vector<std::string> items;  ///< of an option menu or a list
        std::vector<void*> itemData;
    };
    struct Overlay {
        std::string text;
        std::string path;  ///< empty: from a stream
        std::uint64_t platform = 0;
        bool shown = true;
    };
    struct Timeout {
        FunctorTwoParams__* callback = nullptr;
        void* userData = nullptr;
    };
    struct Action {
        std::string owner, label;
        FunctorTwoParams__* callback = nullptr;
        bool checked = false;
    };
    struct Platform {
        PIData::PIPlatformHeader header;
        PIData::PIDataPoint point;
        bool isPlugins = false;  ///< the plug-in has made it
    };

    /// \param instance how the plug-in is to call itself; any pointer
    Host(Findings& findings, Situation& situation, void* instance);
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    // What a check sets.
    Phase phase = Phase::Loaded;
    /// Asked before each call but those of number 16; what it answers takes the place of the service. It may
    /// throw. The record is null where the service brings none.
    std::function<std::optional<PIServiceResult>(Service, void* record)> answer;
    bool answersIdentity = false;         ///< `answer` is asked for number 16, too
    std::function<void(Service)> onCall;  ///< called during each call but those from inside itself
    bool lies = false;                    ///< answers are false: handles and results may be anything
    std::string directory;                ///< file dialogs answer paths in it
    /// Calls into the plug-in, each call by itself; set while there is one. \param name of what enters
    std::function<void(const std::string& name, const std::function<void()>& call)> enter;
    /// Hands an event to the plug-in, set likewise.
    std::function<void(PIApplicationEvents_t, std::uint64_t id)> tell;

    // What a check and Hands look at.
    int calls = 0;              ///< but those of number 16
    std::set<Service> numbers;  ///< that were called
    std::map<void*, Widget> widgets;
    std::map<void*, Overlay> overlays;
    std::map<void*, Timeout> timeouts;
    std::map<void*, Action> actions;
    std::map<std::uint64_t, Platform> platforms;
    std::map<std::string, void*> services;
    std::map<std::string, std::string> settings;
    std::vector<PIHALVIS::ZELEventObserver*> observers;
    std::vector<PIHALVIS::ContextMenuCallbackV3*> contextMenus;
    std::set<FunctorTwoParams__*> callbacks;        ///< all that ever came
    std::vector<FunctorTwoParams__*> contextItems;  ///< of the menu that was asked for last
    int redraws = 0;

    void* instance() const { return instance_; }
    /// Whether a person could use it: it and those around it are shown.
    bool isVisible(const Widget& widget) const;
    /// A file of the host's own, as if the person had opened it.
    void openFile(const std::string& path);
    void closeFile(void* overlay);
    /// Asks for a context menu over an overlay, and keeps its items.
    void requestMenu(void* overlay);

    /// What the plug-in still owns, each with its name. Nothing, once it is closed.
    std::vector<std::string> leftovers() const;
    /// Tells what is left, unless a call with which the plug-in let go of it was answered falsely.
    void judgeLeftovers(const std::string& when);
    /// As the contract says of what is left after Close.
    void dropLeftovers();

    std::int32_t hostBuildNumber() override { return 13000; }
    PIServiceResult handle(void* identity, Service service, void* record) override;

  private:
    /// The plug-in has called wrongly: the text says how.
    struct Misuse : std::runtime_error {
        using runtime_error::runtime_error;
    };
    /// What the call is about was refused, or has gone during the call: nothing is done, and nobody blamed.
    struct Gone {};

    void judgeCall_(void* identity, Service service, void* record);
    PIServiceResult serve_(Service service, void* record);
    PIServiceResult identity_(PI_DATA_CATCHALL& record);

    // Widgets (HostWidgets.cpp).
    static bool isWidgetService_(Service service);
    PIServiceResult serveWidget_(Service service, void* record);
    PIServiceResult create_(Service service, void* record);
    PIServiceResult bind_(PI_DATA_POINTER_AND_POINTER& record);
    PIServiceResult value_(PI_DATA_CATCHALL& record);
    PIServiceResult looks_(PI_DATA_CATCHALL& record);
    PIServiceResult listItems_(PI_DATA_CATCHALL& record);
    PIServiceResult setNumber_(Widget& widget, double number);
    void destroy_(void* handle);

    // The application around them (HostApplication.cpp).
    PIServiceResult serveApplication_(Service service, void* record);
    PIServiceResult icon_(PI_DATA_CATCHALL& record);
    PIServiceResult fileDialog_(PI_DATA_CATCHALL& record);
    PIServiceResult timeout_(PI_DATA_CATCHALL& record);
    PIServiceResult action_(PI_DATA_CATCHALL& record);
    PIServiceResult service_(PI_DATA_CATCHALL& record);
    PIServiceResult notify_(PI_DATA_CATCHALL& record);

    // Scenario and scene (HostScene.cpp).
    PIServiceResult serveScene_(Service service, void* record);
    PIServiceResult platform_(Service service, PI_DATA_CATCHALL& record);
    PIServiceResult camera_(PI_DATA_CATCHALL& record);
    PIServiceResult cursor_(PI_DATA_CATCHALL& record);
    PIServiceResult overlayFiles_(PI_DATA_CATCHALL& record);
    PIServiceResult addOverlay_(PI_DATA_CATCHALL& record, Overlay overlay);
    PIServiceResult contextMenu_(PI_DATA_CATCHALL& record);

    template <typename Observer, typename Call>
    void forEach_(std::vector<Observer*>& all, const char* name, Call call);
    template <typename Record>
    static Record& as_(void* record);
    static std::int64_t integer_(const PI_DATA_CATCHALL& record, std::size_t index);
    static const std::string& text_(const PI_DATA_CATCHALL& record, std::size_t index);
    static double real_(const PI_DATA_CATCHALL& record, std::size_t index);
    static void* pointer_(const PI_DATA_CATCHALL& record, std::size_t index);
    template <typename Selector>
    static Selector selector_(const PI_DATA_CATCHALL& record, Selector last);
    FunctorTwoParams__* callback_(void* callback);
    Widget& widget_(void* handle);
    /// What the host has under a handle. \param kind what it is, for the message
    template <typename Map>
    auto known_(Map& map, void* handle, const char* kind);
    void* newHandle_() { return reinterpret_cast<void*>(++lastHandle_ * 16); }

    Findings& findings_;
    Situation& situation_;
    void* instance_;
    std::thread::id thread_ = std::this_thread::get_id();
    bool inside_ = false;       // onCall is at work
    bool lostRelease_ = false;  // a call with which the plug-in lets go of something was answered falsely
    std::uintptr_t lastHandle_ = 0;
    std::vector<void*> identities_;
    std::set<void*> icons_, lines_, texts_;
    int grabs_ = 0;
    void* openMenu_ = nullptr;
    // The camera.
    double latitude_ = 0.34, longitude_ = -2.62, range_ = 1e6, azimuth_ = 0.0, elevation_ = kRightAngle;
};

}  // namespace kit
