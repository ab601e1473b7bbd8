#include <cstdio>
#include <cstdlib>
#include <new>
#include <string>

#include "common/Files.h"
#include "common/Notify.h"
#include "common/SaveFile.h"
#include "format/Parser.h"
#include "model/Document.h"
#include "model/QuietServiceTable.h"
#include "programs/FailingMemory.h"
#include "support/TemporaryDirectory.h"

// Each allocation of loading and saving fails, once and from then on: the file is the old one or the new one,
// whole, and what is said of it is true.

namespace {

using OverlayEditor::Document;

constexpr int kShapes = 300;

std::string circles(int radius) {
    std::string text = "version 2\n\n";
    for (int i = 0; i < kShapes; ++i)
        text += "start\naltitudeunits m\nrangeunits m\ncircle\ncenterlla " + std::to_string(i % 80) +
                " 7 0\nradius " + std::to_string(radius + i) + "\nend\n\n";
    return text;
}

std::string contents(const std::string& file) {
    std::string text;
    UTILS::readFile(file, text);
    return text;
}

std::size_t shapesIn(const std::string& text) {
    halCore::ZEL::Parser::Shapes shapes;
    halCore::ZEL::Parser().parse(text, shapes);
    return shapes.size();
}

/// \return what is wrong, or nothing
std::string once(const std::string& file, long allocation, bool all) {
    const OverlayEditor::QuietServiceTable host;
    const OverlayEditor::Preferences preferences;
    UTILS::saveFile(file, circles(1));
    OverlayEditor::Overlay overlay;
    Document document(preferences, overlay);
    document.take(document.readFile(file));
    document.save(file);
    const std::string old = contents(file);
    // Another file's shapes over those that are held, and then saved as the first.
    const std::string other = circles(5000);
    bool saved = false;
    bool taken = false;
    failing::arm(allocation, all);
    try {
        taken = document.take(document.read(other, file));
        saved = taken && document.save(file);
    } catch (const std::bad_alloc&) {
    }
    failing::disarm();
    const std::string now = contents(file);
    if (now != old && shapesIn(now) != kShapes) return "the file is cut";
    if (saved && now == old) return "saved, and the file is the old one";
    if (taken && overlay.shapes().size() != kShapes) return "shapes are missing without a word";
    if (document.isSaved() && overlay.text() != now &&
        !(overlay.shapes().empty() && document.fileName().empty()))
        return "the overlay is another than its file, and is called saved";
    if (!document.save(file) || shapesIn(contents(file)) != overlay.shapes().size())
        return overlay.shapes().empty() ? std::string() : "it cannot be saved afterwards";
    return {};
}

}  // namespace

int main(int argc, char** argv) {
    halNotify::setNotifyHandler([](halNotify::Severity, const std::string&) {});
    const long step = argc > 1 ? std::atol(argv[1]) : 1;
    const TemporaryDirectory directory;
    const std::string file = directory.path() + "/circles.zel";
    for (const bool all : {false, true}) {
        long allocation = 1;
        for (bool failed = true; failed; allocation += step) {
            const std::string problem = once(file, allocation, all);
            failed = failing::count() != 0;
            if (!problem.empty()) {
                std::printf("allocation %ld%s: %s\n", allocation, all ? " and all later ones" : "",
                            problem.c_str());
                return 1;
            }
        }
        std::printf("%ld allocations failed%s\n", (allocation - 1) / step - 1,
                    all ? ", each with all later ones" : " once each");
    }
    return 0;
}
