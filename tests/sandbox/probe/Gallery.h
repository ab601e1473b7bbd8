#pragma once

#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "Services.h"

namespace probe {

/// The probe at work: a dialog with one widget of each kind, each of which reports its callbacks to the
/// log, and a field that takes commands.
class Gallery {
  public:
    Gallery();
    /// Takes down what was made, unless it was told to leave it.
    void close();

    bool reportsMouse() const { return reportsMouse_; }
    bool consumesMouse() const { return consumesMouse_; }
    void refresh(int width, int height);

    /// Does what a command of the dialog's field says; its words are separated by blanks. The answer is
    /// shown in the dialog's "Answer:" field.
    std::string perform(const std::vector<std::string>& words);

  private:
    friend class Commands;

    void buildDialog();
    void buildControls(void* parent);
    void buildCommandField(void* parent);
    void* keep(const std::string& name, PIServiceResult handle);
    void* widget(const std::string& name) const;
    /// A callback that reports `name`, whether the sender is the widget's own wrapper, and the value.
    Functor* report(const std::string& name);
    void destroy(const std::string& name);

    struct Entry {
        std::string name;
        void* handle;
        /// Stands for the plug-in's wrapper object: the host hands its address back and never follows it.
        std::unique_ptr<int> wrapper;
    };
    std::vector<Entry> widgets_;  ///< in the order of their creation
    void* dialog_ = nullptr;
    void* menuItem_ = nullptr;
    void* commandField_ = nullptr;
    void* answerField_ = nullptr;
    bool reportsMouse_ = false;
    bool consumesMouse_ = false;
    bool leaves_ = false;
    bool streamsInHook_ = false;

    struct CloseObserver final : PIGUI::PICloseObserver {
        void onClose(PIObject*) override { say("dialog closed"); }
    } closeObserver_;
    struct ThrowingObserver final : PIGUI::PICloseObserver {
        void onClose(PIObject*) override { throw std::runtime_error("thrown on purpose"); }
    } throwingObserver_;
    struct OverlayObserver final : PIHALVIS::ZELEventObserver {
        void addedZEL(void* overlay) override { say(overlay ? "overlay added" : "null overlay added"); }
        void removedZEL(void* overlay) override { say(overlay ? "overlay removed" : "null overlay removed"); }
    } overlayObserver_;
    struct MenuObserver final : PIHALVIS::ContextMenuCallbackV3 {
        void menuRequested(const std::string& list, const PIHALVIS::ContextMenuData* data,
                           void* menu) override;
    } menuObserver_;
    std::map<std::string, void*> handles_;  ///< of what commands have made, by the name they gave
};

extern Gallery* gallery;

}  // namespace probe
