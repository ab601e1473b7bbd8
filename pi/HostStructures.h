#pragma once

#include <cstdint>
#include <string>

/// Plain structures and style words that cross the host boundary.
namespace PIData {

enum class PINetworkProtocol_t : std::int32_t { Unknown = 0, Tcp = 1, Udp = 2 };

enum class PIVerticalDatum_t : std::int32_t { WGS84 = 1, MeanSeaLevel = 2 };

/// How a created entity's position is meant.
enum class CoordReferenceFrame : std::int32_t { Geodetic = 0 };

struct PIPlatformHeader {
    std::uint64_t id = 0;
    std::string name;  ///< UTF-8; several platforms may have the same
    std::string icon;  ///< one of the host's own; a host takes what it does not know for its usual one
};

/// Where a platform is at one time.
struct PIDataPoint {
    double timeSeconds = 0.0;  ///< since the start of the reference year
    double latRad = 0.0;
    double lonRad = 0.0;
    double altMeters = 0.0;   ///< above the WGS-84 ellipsoid
    double headingRad = 0.0;  ///< clockwise from north
    double pitchRad = 0.0;    ///< nose up
    double rollRad = 0.0;     ///< right side down
    double speedMetersPerSecond = 0.0;
};

/// What getHeader and getDataPoint hand over with PI_DATA_STRUCT: the id is the argument, the rest the
/// result.
struct HeaderRequest {
    std::uint64_t id = 0;
    PIPlatformHeader header;
};
struct DataPointRequest {
    std::uint64_t id = 0;
    double timeSeconds = 0.0;  ///< an argument, too: since the start of the reference year
    PIDataPoint point;
};
struct CreatePlatformRequest {
    PIPlatformHeader header;  ///< the id is ignored
    PIDataPoint point;
    CoordReferenceFrame frame = CoordReferenceFrame::Geodetic;
};

}  // namespace PIData

namespace PIGUI {

/// Bits of a container's layout options word. Without them a container is as large as its contents.
enum PILayout : std::uint32_t {
    PILayoutDefault = 0,
    PILayoutFillX = 1,  ///< takes the width that is left
    PILayoutFillY = 2,  ///< takes the height that is left
    PILayoutFrame = 4,  ///< has a visible frame
    PILayoutTight = 8,  ///< no room between its children and around them
};

enum PITextFieldStyle : std::int32_t { PITextFieldNormal = 0, PITextFieldReadOnly = 1 };
enum PISpinnerStyle : std::int32_t { PISpinnerNormal = 0, PISpinnerSigned = 1 };
enum PIColorWellStyle : std::int32_t { PIColorWellOpaque = 0, PIColorWellAlpha = 1 };
enum PIListStyle : std::int32_t { PIListSingle = 0, PIListMultiple = 1 };

}  // namespace PIGUI
