#pragma once

#include <memory>
#include <string>
#include <vector>

#include "kit/probe/Report.h"
#include "kit/probe/Trials.h"

namespace probe {

/// The probe's menu item and window. "Run" makes all trials and writes the report; then a line asks the
/// person for one thing after the other, which can be skipped, and the report is written anew each time.
/// What the person does is judged in Hands.cpp.
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
    /// In the order in which the person is asked.
    enum class Hand {
        None,
        LeftClick,
        DoubleClick,
        RightClick,
        Text,
        Option,
        Row,
        Action,
        Menu,
        Cancel,
        Save,
        Directory,
        Close,
        Done
    };
    struct Step;
    class Closing;
    class Menus;

    void* keep_(PIServiceResult widget);
    void show_();
    void build_();
    PIServiceResult observeClosing_();
    /// What waits for the report that there is, and what the steps have made.
    void forget_();
    void run_(PIObject* sender);
    void say_(const std::string& text);
    bool write_();

    /// The steps, without Hand's ends.
    static const std::vector<Step>& steps_();
    void addSteps_();
    void askFor_(Hand hand);
    /// The person does not want to.
    void skip_();
    std::size_t entryOf_(Hand hand) const { return firstHand_ + static_cast<std::size_t>(hand) - 1; }
    /// Whether a button was pressed in the view, which was not released.
    bool isHeld_() const;
    /// Makes what the step needs. \return whether it can be asked for in this host
    bool prepare_(Hand hand);
    void decide_(Hand hand, Verdict verdict, const std::string& answer = {});
    /// The same for an answer; one that was refused is left out.
    void decide_(Hand hand, bool right, const Answer& answer);
    void clickedTwice_(PIGUI::PIMouseEventType_t type);
    void typed_(PIObject* sender, void* data);
    void chosen_(void* data);
    void rowChosen_(PIObject* sender);
    void acted_(PIObject* sender, void* data);
    void openFile_();
    void closed_(PIObject* sender);

    Report report_;
    Hand hand_ = Hand::None;
    std::size_t firstHand_ = 0, frameEntry_ = 0;  // in the report
    bool asksFrame_ = false;
    bool looksDown_ = false;                         // from straight above a place
    bool hasSelected_ = false;                       // the person has selected a row, as the host says
    std::vector<PIGUI::PIMouseEventType_t> clicks_;  // since the person was asked
    std::unique_ptr<Closing> closing_;
    std::unique_ptr<Menus> menus_;
    std::vector<void*> widgets_;  // in the order of creation
    void *item_ = nullptr, *dialog_ = nullptr, *status_ = nullptr, *field_ = nullptr, *menu_ = nullptr,
         *list_ = nullptr;
    void* action_ = nullptr;
    int fieldWrapper_ = 0, dialogWrapper_ = 0, buttonWrapper_ = 0,
        listWrapper_ = 0;  // whose addresses the host gets as wrappers; 1 when it has
};

/// The report's file. Without links in its directory, as hosts may name files in it.
std::string reportFile();
/// Of an overlay, for a while.
inline std::string overlayFile() {
    return reportFile() + ".zel";
}

}  // namespace probe
