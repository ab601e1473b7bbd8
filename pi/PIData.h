#pragma once

#include <cstdint>
#include <vector>

#include "pi/HostStructures.h"

/// Scenario data. Platform ids are unsigned 64-bit, 0 means none; positions are radians and metres,
/// times seconds since the start of the reference year. [ui thread & after start-up]
namespace PIData {

bool isScenarioInitialized();
std::int32_t getReferenceYear();
std::vector<std::uint64_t> getPlatformList();
double clockGetBegin();
double clockGetVisualTime();
/// \return the id of the new platform, 0 when the host refused
std::uint64_t createPlatform(const PIPlatformHeader& header, const PIDataPoint& point,
                             CoordReferenceFrame frame);
/// \return 0 when the platform is known; otherwise `header` is unchanged
int getHeader(std::uint64_t id, PIPlatformHeader& header);
CoordReferenceFrame getScenarioCoordReferenceFrame();
void removeEntity(std::uint64_t id);
/// \return 0 when the platform has data at that time; otherwise `point` is unchanged
int getDataPoint(std::uint64_t id, double timeSeconds, PIDataPoint& point);

}  // namespace PIData
