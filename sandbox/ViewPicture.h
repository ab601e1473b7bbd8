#pragma once

#include <QSize>
#include <QString>

#include "globe/GlobePainter.h"

class QPrinter;

namespace sandbox {

class GlobePicture;
class GlobeView;

/// Saves a frame as a picture in pixels, or, for print, as vectors over a picture of what has none, when the
/// file ends in ".svg". \return empty, or why not
QString saveFrame(const GlobeFrame& frame, GlobePicture& picture, const QString& file);

/// What the view shows, without hints and what plug-ins draw over it, as a picture of another size. An empty
/// size is that of the view. \return empty, or why not
QString saveView(const GlobeView& view, QSize size, const QString& file);

/// Prints the same on a page: a title, the picture, and below it the scale, the place in the middle and the
/// date. \return empty, or why not
QString printView(const GlobeView& view, const QString& title, QPrinter& printer);

}  // namespace sandbox
