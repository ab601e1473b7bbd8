#pragma once

#include <memory>
#include <string>
#include <vector>

#include "kit/probe/Report.h"
#include "kit/probe/Trials.h"

namespace probe {

/// The probe's menu item and window. "Run" makes all trials and writes the report; then a line asks the
/// person for one thing after the other, which can be skipped, and the report is written anew each time.
class Window {
  public:
    Window();
    /// Destroys what it has made. What still waits never came; the report is written a last time.
    ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    /// Looks only; nothing is consumed.
    void mouse(PIGUI::PIMouseEventType_t type, const PIGUI::PIMouseEvent& event);
    void frame(int width, int height);

  private:
    enum class Hand { None, LeftClick, RightClick, Text, Option, Cancel, Close, Done };
    class Closing;

    void* keep_(PIServiceResult widget);
    void show_();
    void build_();
    void run_();
    void askFor_(Hand hand);
    void decide_(Hand hand, bool right, const std::string& answer);
    void typed_(PIObject* sender);
    void chosen_();
    void openFile_();
    void closed_(PIObject* sender);
    void say_(const std::string& text);
    bool write_();

    Report report_;
    Hand hand_ = Hand::None;
    std::size_t firstHand_ = 0, frameEntry_ = 0;  // in the report
    bool asksFrame_ = false;
    std::vector<PIGUI::PIMouseEventType_t> clicks_;  // since the person was asked
    std::unique_ptr<Closing> closing_;
    std::vector<void*> widgets_;  // in the order of creation
    void *item_ = nullptr, *dialog_ = nullptr, *status_ = nullptr, *field_ = nullptr, *menu_ = nullptr;
    int fieldWrapper_ = 0, dialogWrapper_ = 0;  // whose addresses the host gets as wrappers
};

}  // namespace probe
