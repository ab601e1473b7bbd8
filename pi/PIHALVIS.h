#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

#include "pi/FunctorTwoParams.h"
#include "pi/HostObservers.h"
#include "pi/HostStructures.h"

/// Scene services of the host. Positions are radians and metres. Overlay files that the host has loaded
/// belong to it and are known by opaque handles. [ui thread & after start-up]
namespace PIHALVIS {

/// Camera. Each returns 0 on success and leaves its outputs alone otherwise.
int getEyePosition(double* latRad, double* lonRad, double* altMeters);
int setCameraCenterPos(double latRad, double lonRad, double altMeters);
/// \param azimuthRad direction of view clockwise from north
/// \param elevationRad pi/2 looks straight down
int setCameraRAE(double rangeMeters, double azimuthRad, double elevationRad);

/// Where the view ray through a pixel meets the earth. A null output is not wanted.
/// \return 0 on success; non-zero when the pixel misses the earth, the outputs are then unchanged
int getMouseCursorLLA(int x, int y, double* latRad, double* lonRad, double* altMeters,
                      PIData::PIVerticalDatum_t datum);
/// The same for the mouse cursor's own pixel.
int getMouseCursorLLA(double* latRad, double* lonRad, double* altMeters, PIData::PIVerticalDatum_t datum);
/// The platform under the mouse cursor, 0 when there is none.
std::uint64_t getMouseCursorPlatform();

/// Loads an overlay file and shows it relative to a platform (0: absolute).
/// \param shown 1 to show it at once, 0 to load it hidden
/// \return its handle, null when it cannot be opened or holds no shape
void* loadZELFile(const std::string& path, std::uint64_t platformId, int shown = 1);
/// Loads overlay text for display only: such an overlay is in no list of overlay files.
void* loadZELStream(std::istream& text, std::uint64_t platformId);
void unloadZELFile(void* overlay);
void showZELFile(void* overlay, bool shown);
/// The overlay loaded from a file, null when there is none.
void* getZELObject(const std::string& path);
/// The file an overlay was loaded from, empty when unknown.
std::string getZELFilename(void* overlay);
/// The platform an overlay is attached to, 0 when to none.
std::uint64_t getZELHost(void* overlay);
/// Writes the overlay's text. \return 0 on success
int serializeZELToStream(void* overlay, std::ostream& text);

void registerZELObserver(ZELEventObserver* observer);
void removeZELObserver(ZELEventObserver* observer);

/// Overlay files attached to no platform, and those attached to one.
std::vector<void*> getZELFiles();
std::vector<void*> getAttachedZELFiles(std::uint64_t platformId);

/// Adds a text to the view. \param record lines "ScreenText", then "Field TYPE value" each.
/// \return its handle, null when the record is not understood
void* addScreenText(const std::string& record);
void removeScreenText(void* screenText);

/// A line that moves between two platforms. \return its handle, null when a platform is unknown
void* createAnimatedLine(std::uint64_t fromPlatform, std::uint64_t toPlatform, std::uint32_t rgba);
void removeAnimatedLine(void* line);

void registerContextMenuCallback(ContextMenuCallbackV3* callback);
void removeContextMenuCallback(ContextMenuCallbackV3* callback);
/// \param position items are ordered by it, smaller first
void addContextMenuItem(void* menu, const std::string& label, FunctorTwoParams__* callback,
                        std::int32_t position, std::int32_t enabled);

}  // namespace PIHALVIS
