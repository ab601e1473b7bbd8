#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "cli/EditedText.h"
#include "common/Notify.h"
#include "model/QuietServiceTable.h"
#include "model/RandomFiles.h"

namespace cli {
namespace {

using namespace OverlayEditor;

struct Outcome {
    Edited edited;
    std::string text;
    std::vector<std::string> said;
    int pieces = 0;
};

Outcome editedIn(std::size_t part, const std::string& text, bool anew) {
    Outcome outcome;
    halNotify::setNotifyHandler(
        [&](halNotify::Severity, const std::string& message) { outcome.said.push_back(message); });
    outcome.edited = editText(
        text, "x.zel", anew,
        [&](std::string_view piece) {
            outcome.text += piece;
            ++outcome.pieces;
        },
        part);
    halNotify::setNotifyHandler({});
    // What single shapes come to may be said before what is said of all.
    std::ranges::sort(outcome.said);
    return outcome;
}

/// Wherever a text is cut, the editor makes of it what it makes of the whole, and says the same.
TEST(EditedText, IsThatOfTheWhole) {
    const QuietServiceTable host;
    const Preferences preferences;
    RandomShapes random(preferences, 5);
    RandomFiles files(random);
    const int rounds = std::getenv("CAMPAIGN_ROUNDS") ? 20'000 : 300;
    int pieces = 0;
    for (int round = 0; round < rounds && !HasFailure(); ++round) {
        std::string text;
        for (int i = random.integer(0, 5); i >= 0; --i) text += files.make();
        // More than are named one by one.
        if (round % 20 == 0)
            for (int i = 0; i < 25; ++i)
                text += "start\ncircle\nrangeunits nm\ncenterll 1 2\nradius 50000\nend\n";
        SCOPED_TRACE(text);
        const bool anew = random.maybe();
        const Outcome whole = editedIn(text.size() + 1, text, anew);
        const auto part = static_cast<std::size_t>(random.integer(1, 600));
        const Outcome parts = editedIn(part, text, anew);
        pieces += parts.pieces;
        EXPECT_EQ(parts.text, whole.text);
        EXPECT_EQ(parts.edited.error, whole.edited.error);
        EXPECT_EQ(parts.edited.shapes, whole.edited.shapes);
        EXPECT_EQ(parts.edited.lost.messages, whole.edited.lost.messages);
        if (whole.edited.error.empty()) {
            EXPECT_EQ(parts.said, whole.said);
        }
        if (!anew) {
            EXPECT_EQ(whole.text, text);
        }
    }
    EXPECT_GT(pieces, 3 * rounds);
}

}  // namespace
}  // namespace cli
