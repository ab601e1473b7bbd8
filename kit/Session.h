#pragma once

#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "kit/Check.h"
#include "kit/Host.h"
#include "kit/Plugin.h"

namespace kit {

/// What a user does with a plug-in that nobody has described: uses what it shows, and the mouse in the view.
/// What is done is drawn from the seed alone.
class Hands {
  public:
    Hands(Plugin& plugin, Host& host, std::uint64_t seed) : plugin_(plugin), host_(host), random_(seed) {}

    /// Opens everything that can be opened, and then does so many things.
    void use(int steps);
    /// One of everything that a host may do at any time, each with its name.
    std::vector<std::pair<std::string, std::function<void()>>> incidents();

    void menuItems();
    void press();
    void fireTimeouts();
    void closeDialogs();
    void draw();

  private:
    using Test = bool (*)(const Host::Widget&);

    void step_();
    int upTo_(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }
    /// A widget that a person could use now; null when there is none of those.
    void* usable_(Test test);
    void activate_(void* widget);
    void choose_();
    void type_();
    void act_();
    void click_(int x, int y);
    void stray_();
    void event_();
    void file_();

    Plugin& plugin_;
    Host& host_;
    std::mt19937 random_;
};

/// A plug-in's whole life: loaded, started, used, closed, its old callbacks called, cleaned up, unloaded.
struct Session {
    explicit Session(Context& context);

    Context& context;
    Host host;
    int steps = kSteps;
    std::uint64_t seed;
    /// Called when the plug-in has started, in place of Hands::use.
    std::function<void(Plugin&, Hands&)> use;
    /// Called after initialisation: from here on the host may fail.
    std::function<void(Plugin&, Hands&)> prepare;

    /// \return whether the plug-in has started
    bool play();

    static constexpr int kSteps = 150;
};

/// Empties Settings::home, in which file dialogs and the plug-in's settings have their files, but for an
/// overlay that can be opened. Never the working directory: a plug-in may have changed that.
void resetFiles(const std::string& home);

}  // namespace kit
