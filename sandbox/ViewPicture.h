#pragma once

#include <QSize>
#include <QString>

#include "globe/GlobePainter.h"

class QPrinter;

namespace sandbox {

class GlobePicture;
class GlobeView;

/// How a picture of the view shall be.
struct PictureLook {
    static constexpr int kMostPixels = 8192;  ///< along an edge
    enum class Background { Earth, PlainEarth, White, None };

    QSize size;            ///< empty: that of the view
    double density = 1.0;  ///< pixels for each of the size's
    Background background = Background::Earth;
};

/// Saves a frame as a picture in pixels, or, for print, as vectors over a picture of what has none, when the
/// file ends in ".svg". \return empty, or why not
QString saveFrame(const GlobeFrame& frame, GlobePicture& picture, const QString& file);

/// What the view shows, without hints and what plug-ins draw over it. \return empty, or why not
QString saveView(const GlobeView& view, const PictureLook& look, const QString& file);

/// Prints the same on a page: a title, the picture, and below it the scale, the place in the middle and the
/// date. \return empty, or why not
QString printView(const GlobeView& view, const QString& title, QPrinter& printer);

}  // namespace sandbox
