#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <new>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include "common/Files.h"
#include "common/SaveFile.h"
#include "gui/Form.h"
#include "plugin/LoadedPlugin.h"
#include "programs/FailingMemory.h"
#include "support/TemporaryDirectory.h"

// Each allocation of the editor fails, once and from then on, while it starts, opens its dialog, recovers
// what a killed session left, draws, saves and closes. No exception comes out of it, nothing ends the
// process, a saved file is whole, and each shape that was there is in a file or in a journal afterwards.
// Arguments: the step from one allocation to the next.

namespace {

namespace fs = std::filesystem;
using Function = LoadedPlugin::Function;
using Mouse = PIGUI::PIMouseEventType_t;

/// Has memory when the plug-in has none.
class RichHost final : public PIServiceTable {
  public:
    explicit RichHost(FakeHost& host) : host_(host) {}
    std::int32_t hostBuildNumber() override { return host_.hostBuildNumber(); }
    PIServiceResult handle(void* identity, PIServerFunctions_t service, void* args) override {
        const failing::Counting none(false);
        return host_.handle(identity, service, args);
    }

  private:
    FakeHost& host_;
};

/// What a session tells when it may not be able to speak any more; in memory that it shares with who started
/// it.
struct Notes {
    bool threw = false;
    bool ended = false;
    /// The names of the shapes that must not be lost, each with a blank behind it.
    std::array<char, 200> names{};
    void add(std::string_view name) {
        char* const end = names.data() + std::string_view(names.data()).size();
        const auto room = static_cast<std::size_t>(names.data() + names.size() - end);
        if (name.size() + 2 < room) std::snprintf(end, room, "%s ", std::string(name).c_str());
    }
};

class Session {
  public:
    Session(const std::string& directory, bool all, Notes& notes)
        : directory_(directory), all_(all), notes_(notes) {
        host_.settings["AutoSaveZelDir"] = directory + "/kept";
        host_.pixelToLla = [](int x, int y) {
            return std::optional(halCore::Vec3(0.4 + y * 1e-4, 0.3 + x * 1e-4, 0.0));
        };
    }

    void start() {
        act([&] { plugin_.initialise(rich_); });
        dispatch(Function::StartUp);
        press("Overlay Editor...");
    }
    void press(const char* caption) {
        if (auto* const widget = host_.find(caption); widget && widget->shown) activate(*widget);
    }
    /// What is drawn and listed without a failure meanwhile must not be lost: that the journal cannot be
    /// written any more is the only excuse.
    void draw(const char* name) {
        const long before = failing::count();
        drawCircle_(name);
        wait();
        const bool listed = std::ranges::any_of(host_.widgets, [&](const auto& entry) {
            return std::ranges::count(entry.second.items, name) != 0;
        });
        if (listed && failing::count() == before && (before == 0 || !all_)) notes_.add(name);
    }
    void saveAs() {
        host_.fileDialogAnswers = {directory_ + "/saved.zel"};
        press("Save As...");
    }
    /// Until the journal is written.
    void wait() {
        for (int turn = 0; turn < 5; ++turn) {
            const auto armed = host_.timeouts;
            for (const auto& [handle, timeout] : armed)
                if (host_.timeouts.erase(handle) != 0)
                    act([&] { timeout.callback->Call(nullptr, timeout.userData); });
        }
    }
    void close() {
        dispatch(Function::Close);
        act([&] { plugin_.cleanUp(); });
        notes_.ended = true;
    }

  private:
    template <typename Action>
    void act(Action action) {
        try {
            const failing::Counting counting(true);
            action();
        } catch (...) {
            notes_.threw = true;
        }
    }
    void drawCircle_(const char* name) {
        if (!form_.has("Shape:")) return;
        auto& menu = form_.field("Shape:");
        const auto circle = std::ranges::find(menu.items, "Circle");
        menu.number = static_cast<double>(circle - menu.items.begin());
        activate(menu);
        for (const auto& [type, at] : {std::pair(Mouse::LeftPress, 10), std::pair(Mouse::Motion, 60),
                                       std::pair(Mouse::LeftRelease, 60)}) {
            PIGUI::PIMouseEvent event;
            event.x = event.y = at;
            PIFunctionParams_t record;
            record.integers[PIParameterName_t::EventCode] = static_cast<std::int32_t>(type);
            record.pointers[PIParameterName_t::EventData] = &event;
            act([&] { plugin_.dispatch(Function::HandleMouseEvent, &record); });
        }
        press("Stop");
        if (!form_.has("Name:")) return;
        form_.field("Name:").text = name;
        activate(form_.field("Name:"));
    }
    void activate(const FakeHost::Widget& widget) {
        auto* const callback = widget.callback;
        auto* const wrapper = widget.wrapper;
        if (callback) act([&] { callback->Call(wrapper, nullptr); });
    }
    void dispatch(Function function) {
        PIFunctionParams_t record;
        act([&] { plugin_.dispatch(function, &record); });
    }

    const std::string directory_;
    const bool all_;
    Notes& notes_;
    FakeHost host_;
    Form form_{host_};
    RichHost rich_{host_};
    LoadedPlugin plugin_{host_, false};
};

/// In a process of its own; \return as waitpid has it
template <typename Action>
int inProcess(Action action) {
    const pid_t child = ::fork();
    if (child == 0) {
        action();
        std::_Exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return status;
}

/// All that stands in the files of a directory.
std::string everything(const std::string& directory) {
    std::string all;
    for (const auto& entry : fs::recursive_directory_iterator(directory)) {
        std::string text;
        if (entry.is_regular_file() && UTILS::readFile(entry.path(), text).empty()) all += text;
    }
    return all;
}

std::size_t occurrences(std::string_view text, std::string_view word) {
    std::size_t count = 0;
    for (std::size_t at = text.find(word); at != std::string_view::npos; at = text.find(word, at + 1))
        ++count;
    return count;
}

constexpr const char* kOld = "start\ncircle\ncenterlla 1 2 0\nradius 3\n3d name N-old\nend\n";

/// \return what is wrong, or nothing
std::string once(const std::string& prepared, const std::string& directory, long allocation, bool all,
                 Notes& notes) {
    fs::remove_all(directory);
    fs::copy(prepared, directory, fs::copy_options::recursive);
    notes = {};
    const int status = inProcess([&] {
        failing::arm(allocation, all);
        const failing::Counting none(false);
        Session session(directory, all, notes);
        session.start();
        session.wait();
        session.press("Recover");
        session.draw("N-drawn");
        session.saveAs();
        session.draw("N-late");
        session.close();
    });
    if (!WIFEXITED(status)) return "ended by signal " + std::to_string(WTERMSIG(status));
    if (notes.threw) return "an exception came out";
    const std::string found = everything(directory);
    std::istringstream names(std::string("N-first ") + notes.names.data());
    for (std::string name; names >> name;)
        if (found.find(name) == std::string::npos) return name + " is lost";
    std::string saved;
    UTILS::readFile(directory + "/saved.zel", saved);
    const std::size_t blocks = occurrences(saved, "start\n");
    if (blocks == 0 || blocks != occurrences(saved, "end\n")) return "the saved file is not whole";
    return {};
}

}  // namespace

int main(int argc, char** argv) {
    const long step = argc > 1 ? std::atol(argv[1]) : 1;
    const TemporaryDirectory temporary;
    const std::string prepared = temporary.path() + "/prepared";
    const std::string directory = temporary.path() + "/session";
    fs::create_directories(prepared + "/kept");
    ::setenv("HOME", directory.c_str(), 1);
    UTILS::saveFile(prepared + "/saved.zel", kOld);
    Notes& notes = *new (
        ::mmap(nullptr, sizeof(Notes), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)) Notes;
    // One that is killed, and leaves its journal.
    inProcess([&] {
        Session session(prepared, false, notes);
        session.start();
        session.draw("N-first");
        std::_Exit(0);
    });
    if (std::string_view(notes.names.data()) != "N-first ") {
        std::printf("Nothing is drawn: %s\n", notes.names.data());
        return 1;
    }
    for (const bool all : {false, true}) {
        long count = 0;
        bool failed = true;
        for (long allocation = argc > 2 ? std::atol(argv[2]) : 1; failed; allocation += step) {
            const std::string problem = once(prepared, directory, allocation, all, notes);
            failed = failing::count() != 0;
            count += failed;
            if (!problem.empty()) {
                std::printf("allocation %ld%s: %s\n", allocation, all ? " and all later ones" : "",
                            problem.c_str());
                return 1;
            }
        }
        // What was done without a failure is all there.
        if (std::string_view(notes.names.data()).find("N-late") == std::string_view::npos) {
            std::printf("nothing is drawn: %s\n", notes.names.data());
            return 1;
        }
        std::printf("%ld allocations failed%s\n", count, all ? ", each with all later ones" : " once each");
    }
    return 0;
}
