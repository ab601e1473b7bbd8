#pragma once

#include <cstdint>
#include <locale>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "pi/FunctorTwoParams.h"
#include "pi/PIObject.h"

/// Application services of the host. [ui thread & after start-up]
namespace PICommon {

/// What a file dialog offers and remembers.
struct FileDialogRequest {
    std::string title;
    /// Rows of the filter list, each a text, a tab and blank-separated patterns: "Overlays\t*.zel *.ll".
    std::vector<std::string> filters;
    /// Group and key of the host's settings under which the last used file is remembered.
    std::string settingsGroup;
    std::string settingsKey;
    /// Where to start when nothing is remembered; empty leaves it to the host.
    std::string startDirectory;
};

/// Each shows a modal dialog and returns the chosen path, empty when the user cancelled. Events of the
/// view and timeouts may be dispatched while the dialog is open.
std::string showFileLoadDialog(const FileDialogRequest& request);
std::string showFileSaveDialog(const FileDialogRequest& request);
std::string showDirectorySelectDialog(const FileDialogRequest& request);

/// One call of a callback after a delay. Destroying the object cancels a call that is still to come.
class Timeout : public PIObject {
  public:
    Timeout() = default;
    ~Timeout() override;
    void cancel();
    /// To be called first by the callback: the host forgets a timeout when it fires.
    void fired() { handle_ = nullptr; }
    bool isArmed() const { return handle_ != nullptr; }

  private:
    friend void createTimeout(Timeout&, std::int32_t, FunctorTwoParams__*);
    void replace_(void* handle);
    void* handle_ = nullptr;
};

/// Arms the timeout; one that is armed is cancelled first, so that there is never more than one.
void createTimeout(Timeout& timeout, std::int32_t milliseconds, FunctorTwoParams__* callback);

/// A named command of the host's actions menu. The callback's data points to an std::int32_t: the check
/// state that the user asks for. Destroying the object removes the action.
class Action : public PIObject {
  public:
    Action() = default;
    ~Action() override;
    void* handle() const { return handle_; }

  private:
    friend void createAction(Action&, const std::string&, const std::string&, FunctorTwoParams__*);
    void* handle_ = nullptr;
};

/// Creates the action `label` of the plug-in `owner` and keeps it in `action`.
void createAction(Action& action, const std::string& owner, const std::string& label,
                  FunctorTwoParams__* callback);
/// Sets the check mark of an action found by owner and label; an unknown one is ignored.
void setActionChecked(const std::string& owner, const std::string& label, bool checked);

/// An interface published to other plug-ins under a name.
class Service {
  public:
    virtual ~Service();
    Service(const Service&) = delete;
    Service& operator=(const Service&) = delete;
    const std::string& name() const { return name_; }
    /// False when the host refused: the name is taken.
    bool registerSelf();
    void unregisterSelf();
    /// The interface published under a name, null when there is none. Its owner's.
    static void* find(const std::string& name);

  protected:
    /// \param published what find() gives to others; must live until unregisterSelf()
    Service(std::string name, void* published) : name_(std::move(name)), published_(published) {}

  private:
    std::string name_;
    void* published_;
    bool registered_ = false;
};

/// A service record that only points at its interface.
class BasicService : public Service {
  public:
    BasicService(std::string name, void* published) : Service(std::move(name), published) {}
};

/// Sends one message to the host's log. \param severity as in halNotify::Severity
void notify(std::int32_t severity, const std::string& source, const std::string& text);

/// A message to the host's log under construction, sent when the object dies.
class Notify {
  public:
    explicit Notify(std::int32_t severity) : severity_(severity) { text_.imbue(std::locale::classic()); }
    ~Notify();
    Notify(const Notify&) = delete;
    Notify& operator=(const Notify&) = delete;

    template <typename T>
    Notify& operator<<(const T& value) {
        text_ << value;
        return *this;
    }

  private:
    std::int32_t severity_;
    std::ostringstream text_;
};

/// Writes a text to the host's debug output as it stands.
void debugPrint(const std::string& text);

/// Asks for one frame of the 3-D view, soon; several calls before it give one frame.
void forceOpenGLRedraw();

}  // namespace PICommon
