#include "pi/PIHALVIS.h"

#include <cmath>

#include "pi/CatchallCall.h"
#include "pi/HostFaults.h"

namespace PIHALVIS {

namespace {

using Id = PIServerFunctions_t;
namespace Select = PISelector;

/// Performs a call whose results are latitude, longitude and altitude. A latitude that is none is mostly one
/// in degrees.
int position(Id service, CatchallCall& call, double* latRad, double* lonRad, double* altMeters) {
    if (!call.perform() || !call.hasRealResults(3)) return 1;
    constexpr double pole = 1.5707963267948966;
    constexpr double rounding = 1e-9;
    if (!(std::abs(call.realResult(0)) <= pole + rounding)) {
        HostFaults::report(service, "latitude " + std::to_string(call.realResult(0)) +
                                        " is beyond a pole; angles are radians");
        return 1;
    }
    if (latRad) *latRad = call.realResult(0);
    if (lonRad) *lonRad = call.realResult(1);
    if (altMeters) *altMeters = call.realResult(2);
    return 0;
}

std::vector<void*> overlays(CatchallCall& call) {
    call.perform();
    std::vector<void*> found;
    found.reserve(call.pointerResults());
    for (std::size_t i = 0; i < call.pointerResults(); ++i) found.push_back(call.pointerResult(i));
    return found;
}

}  // namespace

int getEyePosition(double* latRad, double* lonRad, double* altMeters) {
    CatchallCall call(Id::Camera, Select::Camera::EyePosition);
    return position(Id::Camera, call, latRad, lonRad, altMeters);
}

int setCameraCenterPos(double latRad, double lonRad, double altMeters) {
    CatchallCall call(Id::Camera, Select::Camera::SetCenter);
    return call.real(latRad).real(lonRad).real(altMeters).perform() ? 0 : 1;
}

int setCameraRAE(double rangeMeters, double azimuthRad, double elevationRad) {
    CatchallCall call(Id::Camera, Select::Camera::SetRangeAzimuthElevation);
    return call.real(rangeMeters).real(azimuthRad).real(elevationRad).perform() ? 0 : 1;
}

int getMouseCursorLLA(int x, int y, double* latRad, double* lonRad, double* altMeters,
                      PIData::PIVerticalDatum_t datum) {
    CatchallCall call(Id::Cursor, Select::Cursor::LlaAtPixel);
    call.integer(x).integer(y).integer(static_cast<std::int64_t>(datum));
    return position(Id::Cursor, call, latRad, lonRad, altMeters);
}

int getMouseCursorLLA(double* latRad, double* lonRad, double* altMeters, PIData::PIVerticalDatum_t datum) {
    CatchallCall call(Id::Cursor, Select::Cursor::LlaAtCursor);
    call.integer(static_cast<std::int64_t>(datum));
    return position(Id::Cursor, call, latRad, lonRad, altMeters);
}

std::uint64_t getMouseCursorPlatform() {
    CatchallCall call(Id::Cursor, Select::Cursor::PlatformAtCursor);
    call.perform();
    return static_cast<std::uint64_t>(call.integerResult(0));
}

void* loadZELFile(const std::string& path, std::uint64_t platformId, int shown) {
    CatchallCall call(Id::OverlayFiles, Select::OverlayFiles::LoadFile);
    call.text(path).integer(static_cast<std::int64_t>(platformId)).integer(shown).perform();
    return call.pointerResult(0);
}

void* loadZELStream(std::istream& text, std::uint64_t platformId) {
    CatchallCall call(Id::OverlayFiles, Select::OverlayFiles::LoadStream);
    call.pointer(&text).integer(static_cast<std::int64_t>(platformId)).perform();
    return call.pointerResult(0);
}

void unloadZELFile(void* overlay) {
    if (overlay) CatchallCall(Id::OverlayFiles, Select::OverlayFiles::Unload).pointer(overlay).perform();
}

void showZELFile(void* overlay, bool shown) {
    if (!overlay) return;
    CatchallCall(Id::OverlayFiles, Select::OverlayFiles::Show)
        .pointer(overlay)
        .integer(shown ? 1 : 0)
        .perform();
}

void* getZELObject(const std::string& path) {
    CatchallCall call(Id::OverlayFiles, Select::OverlayFiles::FindByFileName);
    call.text(path).perform();
    return call.pointerResult(0);
}

std::string getZELFilename(void* overlay) {
    if (!overlay) return {};
    CatchallCall call(Id::OverlayFiles, Select::OverlayFiles::FileName);
    call.pointer(overlay).perform();
    return call.textResult(0);
}

std::uint64_t getZELHost(void* overlay) {
    if (!overlay) return 0;
    CatchallCall call(Id::OverlayFiles, Select::OverlayFiles::Host);
    call.pointer(overlay).perform();
    return static_cast<std::uint64_t>(call.integerResult(0));
}

int serializeZELToStream(void* overlay, std::ostream& text) {
    if (!overlay) return 1;
    CatchallCall call(Id::OverlayFiles, Select::OverlayFiles::SerializeToStream);
    // A stream that could not take it all says nothing else of it.
    return call.pointer(overlay).pointer(&text).perform() && text.good() ? 0 : 1;
}

void registerZELObserver(ZELEventObserver* observer) {
    CatchallCall(Id::OverlayFiles, Select::OverlayFiles::RegisterObserver).pointer(observer).perform();
}

void removeZELObserver(ZELEventObserver* observer) {
    CatchallCall(Id::OverlayFiles, Select::OverlayFiles::RemoveObserver).pointer(observer).perform();
}

std::vector<void*> getZELFiles() {
    CatchallCall call(Id::OverlayLists, Select::OverlayLists::Unattached);
    return overlays(call);
}

std::vector<void*> getAttachedZELFiles(std::uint64_t platformId) {
    CatchallCall call(Id::OverlayLists, Select::OverlayLists::Attached);
    call.integer(static_cast<std::int64_t>(platformId));
    return overlays(call);
}

void* addScreenText(const std::string& record) {
    CatchallCall call(Id::ScreenText, Select::ScreenText::Add);
    call.text(record).perform();
    return call.pointerResult(0);
}

void removeScreenText(void* screenText) {
    if (screenText) CatchallCall(Id::ScreenText, Select::ScreenText::Remove).pointer(screenText).perform();
}

void* createAnimatedLine(std::uint64_t fromPlatform, std::uint64_t toPlatform, std::uint32_t rgba) {
    CatchallCall call(Id::AnimatedLine, Select::AnimatedLine::Create);
    call.integer(static_cast<std::int64_t>(fromPlatform))
        .integer(static_cast<std::int64_t>(toPlatform))
        .integer(rgba)
        .perform();
    return call.pointerResult(0);
}

void removeAnimatedLine(void* line) {
    if (line) CatchallCall(Id::AnimatedLine, Select::AnimatedLine::Remove).pointer(line).perform();
}

void registerContextMenuCallback(ContextMenuCallbackV3* callback) {
    CatchallCall(Id::ContextMenu, Select::ContextMenu::Register).pointer(callback).perform();
}

void removeContextMenuCallback(ContextMenuCallbackV3* callback) {
    CatchallCall(Id::ContextMenu, Select::ContextMenu::Remove).pointer(callback).perform();
}

void addContextMenuItem(void* menu, const std::string& label, FunctorTwoParams__* callback,
                        std::int32_t position, std::int32_t enabled) {
    if (!menu) return;
    CatchallCall(Id::ContextMenu, Select::ContextMenu::AddItem)
        .pointer(menu)
        .pointer(callback)
        .text(label)
        .integer(position)
        .integer(enabled)
        .perform();
}

}  // namespace PIHALVIS
