#pragma once

#include <QString>
#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "globe/DrawList.h"
#include "globe/GlobePainter.h"
#include "globe/Sprites.h"

namespace sandbox {

struct GraticuleLabel;

TextLook lookOf(const DrawList::Label& label);
/// How the names of platforms look.
TextLook platformLook();

/// Where everything that is written on a view stands, so that it can be read: what has no room is left out.
/// All places are widget pixels.
///
/// Of overlays' labels that overlap those with the highest priority remain; of equal ones that cannot both
/// be read, the one that would be drawn last. Then come the names of platforms, whose
/// symbols are always there, of meridians and parallels, and of countries.
struct TextLayout {
    struct Label {
        const DrawList::Label* label = nullptr;
        double x = 0.0;  ///< where its place appears
        double y = 0.0;
    };
    struct Platform {
        double x = 0.0;
        double y = 0.0;
        float turn = 0.0F;  ///< of its heading on the screen, radians clockwise from up
        bool isCross = false;
        /// Of its name's upper left corner, from its place.
        static constexpr double kNameX = 12.0;
        static constexpr double kNameY = -8.0;
    };
    struct Name {
        double x = 0.0;  ///< its platform's place
        double y = 0.0;
        std::string text;
    };
    /// Its middle is at its place.
    struct Text {
        double x = 0.0;
        double y = 0.0;
        QString text;
        TextLook look;
    };

    std::vector<Label> labels;        ///< in drawing order
    std::vector<Platform> platforms;  ///< of very many in one spot the last
    std::vector<Name> names;          ///< of those that have room for it
    /// How large their symbols are: smaller where there are more than can be told apart.
    double symbolScale = 1.0;
    std::vector<Text> map;     ///< the graticule's and the countries' names
    std::vector<Text> counts;  ///< "+3" beside a label or a name that three others had to give way to
};

/// \param labels of the frame's overlays, in drawing order, which the layout names
TextLayout layOutTexts(const GlobeFrame& frame, std::span<const DrawList::Label* const> labels,
                       std::span<const GraticuleLabel> graticule);

/// What a screen text and the strip that it stands on cover; empty without a text.
QRectF areaOf(const ScreenText& text);
/// The same of the view's scale.
QRectF areaOfScale(const GlobeFrame& frame);

}  // namespace sandbox
