// SPDX-FileCopyrightText: 2026 the OverlayEditor authors
// SPDX-License-Identifier: MIT

#pragma once

#include "format/Annotation.h"
#include "format/CircularHeightShape.h"
#include "format/CircularShape.h"
#include "format/Color.h"
#include "format/EllipticalShape.h"
#include "format/FillableShape.h"
#include "format/ImageOverlay.h"
#include "format/LatLonAltBox.h"
#include "format/OutlinedShape.h"
#include "format/PointBasedShape.h"
#include "format/Points.h"
#include "format/ShapeType.h"
#include "format/ZelShape.h"
