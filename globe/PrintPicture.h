#pragma once

#include <QIODevice>
#include <QImage>

#include "globe/GlobePainter.h"
#include "globe/OverlayScene.h"

namespace sandbox {

/// Draws a frame's overlays, graticule and base map as vectors, for print: lines, areas and texts, with what
/// lies on the far side of the earth or behind solid bodies left out. `ground` lies behind it all; it holds
/// what has no vectors, such as the earth and pictures. False when the device cannot be written.
bool printPicture(const GlobeFrame& frame, const QImage& ground, QIODevice& device);

/// The shapes of a scene that can only be had as a picture, in a scene of their own.
OverlayScene picturesOf(const OverlayScene& scene);

}  // namespace sandbox
